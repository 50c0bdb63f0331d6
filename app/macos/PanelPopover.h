// For the views.
#pragma once

#include "AwakePanel.h"
#include "PanelBody.h"
#include "PanelDismissal.h"
#include "Popover.h"
#include "SettingsView.h"
#include "support/Lifetime.h"

#import <AppKit/AppKit.h>

NS_ASSUME_NONNULL_BEGIN

namespace wakeloft {

/// The panel in a popover below the item in the menu bar. A popover does: it hangs from the item, takes the
/// keyboard and makes room for another one at its button. Only what closes it is ours. Left to itself it
/// stays open while other items of the menu bar are pressed, as those bring no other app to the front, and a
/// press on its own item would close it and open it again.
class PanelPopover {
  public:
    /// `panel`, and what `settings` refers to, must outlive it. `shown` is told when it opens and closes.
    PanelPopover(AwakePanel& panel, const SettingsSource& settings, std::function<void(bool isOpen)> shown);
    PanelPopover(const PanelPopover&) = delete;
    PanelPopover& operator=(const PanelPopover&) = delete;
    ~PanelPopover();

    [[nodiscard]] bool isOpen() const { return isOpen_; }
    /// Brings the app to the front, too. A press in the window of `anchor` does not close it: that is up to
    /// what is there.
    void openBelow(NSView* anchor);
    void close();
    /// Closes it as the user does at the item or by Escape: the app that was in front before it goes on.
    void closeAndStepBack();
    /// Redraws what differs. Does nothing while closed.
    void refresh();
    /// Has the keys typed in the panel, once the app is in front. Does nothing while closed.
    void takeKeyboard();

  private:
    void draw();
    void armTick();
    void closes();
    bool keyPressed(NSEvent* event);
    [[nodiscard]] bool isPartOfPanel(NSWindow* _Nullable window) const;

    AwakePanel& panel_;
    SettingsSource source_;
    std::function<void(bool isOpen)> shown_;
    bool isOpen_ = false;
    NSView* _Nullable anchor_ = nil;
    NSRunningApplication* _Nullable before_ = nil; ///< in front when it opened; nil: we were
    NSTimer* _Nullable tick_ = nil;
    PanelBody body_;
    SettingsView settings_;
    PanelDismissal dismissal_;
    std::unique_ptr<Popover> popover_;
    Subscription settingsChanged_;
    Lifetime lifetime_;
};

} // namespace wakeloft

NS_ASSUME_NONNULL_END
