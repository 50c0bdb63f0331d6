#pragma once

#include "AboutPopup.h"
#include "ApplicationDelegate.h"
#include "AwakePanel.h"
#include "BundleLocalizer.h"
#include "CFMainRunLoop.h"
#include "Deepwake.h"
#include "FoundationDurationFormatter.h"
#include "FoundationUserDefaults.h"
#include "IOKitSleepBlocker.h"
#include "MenuBarItem.h"
#include "QuitConfirmationDelegate.h"
#include "SMAppServiceLoginItem.h"
#include "SettingsMenu.h"
#include "SettingsPopup.h"
#include "SparkleSoftwareUpdate.h"
#include "SystemClocks.h"
#include "SystemDeadlineRecheckNotifier.h"
#include "SystemTimeZone.h"
#include "TimerDeadlineScheduler.h"
#include "WorkspaceLinkOpener.h"
#include "session/AwakeIntentStore.h"

#include <memory>
#include <optional>

namespace wakeloft {

/// The running application on macOS: builds the parts in their order, and ties the panel to the item in the
/// menu bar and to the system. Main thread. It lasts as long as the process, for the system's threads may be
/// in it until then.
class MacApp {
  public:
    /// Restores the session, and starts looking for updates.
    MacApp();
    MacApp(const MacApp&) = delete;
    MacApp& operator=(const MacApp&) = delete;
    ~MacApp() = delete;

    /// Shows the item in the menu bar, and lives until the process ends.
    void run() { application_.run(); }

  private:
    void launched();
    void openPanel();
    bool confirms(const QuitConfirmation& confirmation);

    // The order of these is the order of the launch.
    CFMainRunLoop loop_;
    QuitConfirmationDelegate quitConfirmation_;
    ApplicationDelegate application_;

    FoundationUserDefaults defaults_;
    IOKitSleepBlocker blocker_;
    UserDefaultsAwakeIntentStore store_;
    SystemDateProvider dates_;
    SystemContinuousTimeProvider continuous_;
    TimerDeadlineScheduler scheduler_;
    SystemDeadlineRecheckNotifier recheck_;
    AwakeController controller_;
    Deepwake deepwake_;
    SMAppServiceLoginItem loginItem_;
    LoginItemController login_;
    UserDefaultsPresetDurationStore presetStore_;
    PresetDurationsController presets_;
    std::optional<SparkleSoftwareUpdate> update_; ///< after the quit confirmation knows the controllers

    BundleLocalizer localizer_;
    FoundationDurationFormatter formatter_;
    SystemTimeZone timeZone_;
    WorkspaceLinkOpener opener_;
    AwakePanel panel_;
    SettingsMenu settingsMenu_;
    SettingsPopup settingsPopup_;
    AboutPopup about_;
    std::unique_ptr<MenuBarItem> item_; ///< from the end of the launch on
};

} // namespace wakeloft
