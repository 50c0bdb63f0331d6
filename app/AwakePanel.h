#pragma once

#include "Controllers.h"
#include "PanelContent.h"
#include "StatusTexts.h"

#include <functional>
#include <map>
#include <string>
#include <vector>

namespace wakeloft {

/// Turns the controllers into what the panel and the tray item show, and the user's clicks into calls on
/// them. Main thread. Everything handed in must outlive it.
class AwakePanel {
  public:
    /// What is not the session's business: trouble of the program around it, each in a sentence of its own.
    enum class Trouble { settingsRead, settingsWrite, sessionBus, systemEvents, trayHost, tray };

    struct Shell {
        std::function<void()> openPanel;
        std::function<void()> quit;
        /// Shows where the user approves what opens at login; empty where the system asks for no approval.
        std::function<void()> openLoginItemsSettings = {};
        /// The system's settings name extensions beside the login items (macOS 15 and later).
        bool namesExtensions = false;
    };

    AwakePanel(const Controllers& controllers, const Localizer& localizer, const DurationFormatter& formatter,
               Locale locale, Shell shell);

    [[nodiscard]] PanelContent content() const;
    [[nodiscard]] TrayContent trayContent() const;

    /// How long the status line of `content` is right from now on, short of anything happening: until just
    /// after its second has passed. Nothing where it does not tick.
    [[nodiscard]] std::optional<Seconds> untilStatusLineTicks() const;

    void perform(const PanelAction& action);

    /// Brings the state up to date; a view calls it each time the user opens the panel.
    void opened();

    /// Shows `sentence` as a notice until it is reported anew; empty takes it away.
    void report(Trouble trouble, std::string sentence);

    /// The content may have changed.
    Signal& changed() { return changed_; }

  private:
    [[nodiscard]] std::vector<PanelButton> sessionButtons() const;
    [[nodiscard]] PanelSwitch deepwake() const;
    [[nodiscard]] std::vector<PanelNotice> deepwakeNotices() const;
    [[nodiscard]] std::vector<PanelNotice> notices() const;
    [[nodiscard]] PanelSwitch openAtLogin() const;
    [[nodiscard]] std::vector<PanelNotice> loginNotices() const;
    [[nodiscard]] PanelButton mainButton() const;
    [[nodiscard]] MenuBarIcon icon() const;
    [[nodiscard]] bool offersPresets() const;

    AwakeController& controller_;
    LidAwakeController& lid_;
    LoginItemController& loginItem_;
    PresetDurationsController& presets_;
    const Localizer& localizer_;
    StatusTexts texts_;
    Shell shell_;
    std::map<Trouble, std::string> troubles_;
    Signal changed_;
    std::vector<Subscription> subscriptions_;
};

} // namespace wakeloft
