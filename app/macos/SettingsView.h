// For the views.
#pragma once

#include "Popover.h"
#include "PresetChooser.h"
#include "SettingsButton.h"
#include "SettingsSource.h"
#include "support/Lifetime.h"

#import <AppKit/AppKit.h>

#include <memory>
#include <optional>

NS_ASSUME_NONNULL_BEGIN

namespace wakeloft {

/// Ties the settings button to its menu and shows the popover that a command asks for.
class SettingsView {
  public:
    /// What `source` refers to and the button must outlive it.
    SettingsView(const SettingsSource& source, SettingsButton& button);

    void openMenu();
    /// Does what the key is a shortcut for; false where it is for nothing.
    bool performShortcut(NSEvent* event);

    void closePopover();
    [[nodiscard]] bool isWindowOfPopover(NSWindow* _Nullable window) const;

  private:
    [[nodiscard]] NSMenuItem* itemFor(const SettingsMenuItem& content);
    void refresh();
    void showPopover(SettingsPopupKind kind);
    void popoverCloses(SettingsPopupKind kind);

    SettingsSource source_;
    SettingsButton& button_;
    NSMenu* _Nullable menu_ = nil; ///< the last one: it keeps what its items call
    std::optional<SettingsPopupKind> shown_;
    std::unique_ptr<PresetChooser> chooser_;
    std::unique_ptr<Popover> popover_;
    Subscription menuChanged_;
    Subscription presetsChanged_;
    Lifetime lifetime_;
};

} // namespace wakeloft

NS_ASSUME_NONNULL_END
