#pragma once

#include "AwakePanel.h"
#include "BusConnection.h"
#include "ColorScheme.h"
#include "DesktopApplication.h"
#include "GettextLocalizer.h"
#include "IcuDurationFormatter.h"
#include "JsonUserDefaults.h"
#include "LogindSleepBlocker.h"
#include "PanelView.h"
#include "SdEventMainRunLoop.h"
#include "StatusNotifierItem.h"
#include "SystemClocks.h"
#include "SystemDeadlineRecheckNotifier.h"
#include "TimerDeadlineScheduler.h"
#include "session/AwakeIntentStore.h"

#include <memory>
#include <string>
#include <vector>

namespace wakeloft {

/// The running application on Linux: builds the parts in their order and ties the panel to the tray item, the
/// session bus and the views. Main thread.
class LinuxApp {
  public:
    /// `sessionBus` is null where there is none, and `sessionBusTrouble` says why then. Both must outlive the
    /// app.
    LinuxApp(SdEventMainRunLoop& loop, sd_bus* sessionBus, const std::string& sessionBusTrouble);
    LinuxApp(const LinuxApp&) = delete;
    LinuxApp& operator=(const LinuxApp&) = delete;
    ~LinuxApp();

    /// Somebody started the program again: shows the panel.
    void activate(const std::string& activationToken);

    /// "turn-on", "turn-off", "open", "quit" take nothing; "start-session" takes its length in seconds.
    bool perform(const std::string& action, const DesktopApplication::Argument& argument);

  private:
    void tellSettingsTrouble();
    void makeTrayItem(sd_bus* sessionBus);
    void trayHostChanged(bool isHosted);
    void noTrayHost();
    void trayActivated(int x, int y, const std::string& activationToken);
    void menuChosen(std::int32_t id);
    void refresh();
    [[nodiscard]] TrayItemFace trayFace(const TrayContent& content);
    std::int32_t idOf(const PanelAction& action);
    void followColorScheme(sd_bus* sessionBus);

    SdEventMainRunLoop& loop_;
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

    AwakePanel panel_;
    PanelView view_;
    std::unique_ptr<ColorScheme> colorScheme_;
    TrayContent trayContent_;
    std::vector<PanelAction> menuActions_; ///< by the id of their line less one
    std::string loggedReadTrouble_;
    int trayHostChanges_ = 0;
    std::unique_ptr<StatusNotifierItem> trayItem_;
    Subscription panelChanged_;
    Subscription settingsTroubleChanged_;
    Subscription systemBusReopened_;
    Lifetime lifetime_;
};

} // namespace wakeloft
