#pragma once

#include "AboutPopup.h"
#include "FramedMenu.h"
#include "PresetChooser.h"
#include "SettingsButton.h"
#include "SettingsMenu.h"
#include "SettingsPopup.h"

#include <QKeyEvent>
#include <QPointer>

namespace wakeloft {

class Popover;

/// The settings of the app as the views are given them.
struct SettingsSource {
    SettingsMenu& menu;
    SettingsPopup& presets;
    AboutPopup& about;
};

/// Ties the settings button to its menu and shows the popover that a command asks for. Main thread.
class SettingsView : public QObject {
  public:
    /// What `source` refers to and the button must outlive it.
    SettingsView(const SettingsSource& source, SettingsButton& button);

    /// Draws what differs.
    void refresh();
    /// Does what the key is a shortcut for; false where it is for nothing.
    bool performShortcut(const QKeyEvent& event);

  private:
    void performLater(SettingsAction action);
    void openMenu();
    void showPopover(SettingsPopupKind kind);

    SettingsSource source_;
    SettingsButton& button_;
    QPointer<FramedMenu> menu_;
    QPointer<Popover> popover_;
    std::optional<SettingsPopupKind> shown_;
    QPointer<PresetChooser> chooser_;
    Subscription menuChanged_;
    Subscription presetsChanged_;
};

} // namespace wakeloft
