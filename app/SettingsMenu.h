#pragma once

#include "SettingsContent.h"
#include "support/Localizer.h"
#include "support/Observable.h"

#include <functional>

namespace wakeloft {

/// The app's few secondary commands behind one button, and the popover that two of them open. Main thread.
class SettingsMenu {
  public:
    /// What the feedback page is told, where it is known.
    struct Feedback {
        std::optional<std::string> appVersion;
        std::optional<std::string> macOSVersion; ///< on macOS only
        std::optional<std::string> language;     ///< of the interface, as `AppLanguage` names it
    };

    struct Shell {
        std::function<void()> activate; ///< brings the app to the front, so that a popover gets the keyboard
        std::function<void()> checkForUpdates;
        std::function<void(const std::string& address)> openPage; ///< in the user's browser
        std::function<void()> terminate;                          ///< by way of the quit confirmation
    };

    /// `localizer` must outlive the menu.
    SettingsMenu(const Localizer& localizer, Feedback feedback, Shell shell);

    [[nodiscard]] SettingsMenuContent content() const;
    void perform(SettingsAction action);

    /// A view tells which popover has closed. One that was replaced meanwhile does not take the new one
    /// along.
    void popupClosed(SettingsPopupKind popup);

    /// Shows `sentence` until the next command: what went wrong with the last one.
    void report(std::string sentence);

    /// The content may have changed.
    Signal& changed() { return changed_; }

  private:
    void show(SettingsPopupKind popup);

    const Localizer& localizer_;
    Feedback feedback_;
    Shell shell_;
    Signal changed_;
    Observable<std::optional<SettingsPopupKind>> popup_{changed_};
    Observable<std::string> failure_{changed_};
};

} // namespace wakeloft
