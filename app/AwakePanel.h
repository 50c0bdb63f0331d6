#pragma once

#include "PanelContent.h"
#include "session/AwakeController.h"
#include "session/AwakeDuration.h"
#include "support/Locale.h"
#include "support/Localizer.h"

#include <functional>
#include <map>
#include <string>

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
    };

    AwakePanel(AwakeController& controller, const Localizer& localizer, const DurationFormatter& formatter,
               Locale locale, Shell shell);

    [[nodiscard]] PanelContent content() const;
    [[nodiscard]] TrayContent trayContent() const;

    void perform(const PanelAction& action);

    /// Brings the state up to date; a view calls it each time the user opens the panel.
    void opened();

    /// Shows `sentence` as a notice until it is reported anew; empty takes it away.
    void report(Trouble trouble, std::string sentence);

    /// The content may have changed.
    Signal& changed() { return changed_; }

  private:
    [[nodiscard]] std::string presetSentence(const AwakeDuration& preset) const;
    [[nodiscard]] std::string explanation() const;
    [[nodiscard]] std::string statusLine() const;
    [[nodiscard]] std::string spokenStatus() const;
    [[nodiscard]] std::string spokenIconLabel() const;
    [[nodiscard]] std::string failureText(const AwakeFailure& failure) const;
    [[nodiscard]] std::vector<PanelNotice> notices() const;
    [[nodiscard]] PanelButton mainButton() const;
    [[nodiscard]] MenuBarIcon icon() const;

    AwakeController& controller_;
    const Localizer& localizer_;
    const DurationFormatter& formatter_;
    Locale locale_;
    Shell shell_;
    std::map<Trouble, std::string> troubles_;
    Signal changed_;
    Subscription controllerChanged_;
};

} // namespace wakeloft
