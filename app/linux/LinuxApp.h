#pragma once

#include "AboutPopup.h"
#include "AwakePanel.h"
#include "BusConnection.h"
#include "Deepwake.h"
#include "DesktopAppearance.h"
#include "DesktopApplication.h"
#include "GettextLocalizer.h"
#include "IcuDurationFormatter.h"
#include "JsonUserDefaults.h"
#include "LinkOpener.h"
#include "LogindSleepBlocker.h"
#include "PanelView.h"
#include "QuitConfirmationDelegate.h"
#include "SdEventMainRunLoop.h"
#include "SettingsMenu.h"
#include "SettingsPopup.h"
#include "SoftwareCentreUpdate.h"
#include "SystemClocks.h"
#include "SystemDeadlineRecheckNotifier.h"
#include "SystemTimeZone.h"
#include "TimerDeadlineScheduler.h"
#include "Tray.h"
#include "XdgAutostartLoginItem.h"
#include "session/AwakeIntentStore.h"

#include <memory>
#include <string>
#include <vector>

namespace wakeloft {

/// The running application on Linux: builds the parts in their order and ties the panel to the tray item, the
/// session bus and the views. Main thread.
class LinuxApp {
  public:
    /// What the program was started with.
    struct Surroundings {
        SdEventMainRunLoop& loop;
        sd_bus* sessionBus;                   ///< null where there is none
        std::string sessionBusTrouble;        ///< why there is none
        std::vector<std::string> environment; ///< of the user's session
    };

    /// Who asks to quit.
    enum class QuitRequest { user, system };

    /// The loop and the bus must outlive the app.
    explicit LinuxApp(const Surroundings& surroundings);
    LinuxApp(const LinuxApp&) = delete;
    LinuxApp& operator=(const LinuxApp&) = delete;
    ~LinuxApp();

    /// Somebody started the program again: shows the panel.
    void activate(const std::string& activationToken);

    /// "turn-on", "turn-off", "deepwake-on", "deepwake-off", "open", "quit" take nothing; "start-session"
    /// takes its length in seconds.
    bool perform(const std::string& action, const DesktopApplication::Argument& argument);

    /// Asks the user where there is something to ask, gives Deepwake back, and ends Qt's loop.
    void quit(QuitRequest request);

  private:
    void decideOnQuitting(QuitRequest request);
    void tellSettingsTrouble();
    void noTrayHost();
    void trayPressed(int x, int y, const std::string& activationToken);
    void refresh();
    void followAppearance(sd_bus* sessionBus);

    SdEventMainRunLoop& loop_;
    QuitConfirmationDelegate quitConfirmation_;
    bool isSystemQuit_ = false; ///< of the request that is being decided
    BusConnection systemBus_;
    GettextLocalizer localizer_;
    IcuDurationFormatter formatter_;
    std::string settingsPathTrouble_;
    std::string systemEventsTrouble_;
    bool isBuilt_ = false;                 ///< all parts are there to be told of trouble
    JsonUserDefaults* settings_ = nullptr; ///< `defaults_`, where there is a file
    std::unique_ptr<UserDefaults> defaults_;

    LogindSleepBlocker blocker_;
    UserDefaultsAwakeIntentStore store_;
    SystemDateProvider dates_;
    SystemContinuousTimeProvider continuous_;
    TimerDeadlineScheduler scheduler_;
    SystemDeadlineRecheckNotifier recheck_;
    AwakeController controller_;
    Deepwake deepwake_;
    XdgAutostartLoginItem loginItem_;
    LoginItemController login_;
    UserDefaultsPresetDurationStore presetStore_;
    PresetDurationsController presets_;

    LinkOpener opener_;
    SoftwareCentreUpdate update_;
    SystemTimeZone timeZone_;
    AwakePanel panel_;
    SettingsMenu settingsMenu_;
    SettingsPopup settingsPopup_;
    AboutPopup about_;
    PanelView view_;
    std::unique_ptr<DesktopAppearance> appearance_;
    std::unique_ptr<Tray> tray_;
    std::string loggedReadTrouble_;
    Subscription panelChanged_;
    Subscription settingsTroubleChanged_;
    Subscription systemBusReopened_;
    Lifetime lifetime_;
};

} // namespace wakeloft
