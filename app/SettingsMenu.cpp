#include "SettingsMenu.h"

#include "preferences/FeedbackLink.h"

#include <utility>

namespace wakeloft {

SettingsMenu::SettingsMenu(const Localizer& localizer, Feedback feedback, Shell shell)
    : localizer_(localizer), feedback_(std::move(feedback)), shell_(std::move(shell)) {}

SettingsMenuContent SettingsMenu::content() const {
    SettingsMenuContent content;
    content.title = localizer_.text("Settings");
    content.symbol = "gearshape";
    content.trailingSymbol = "chevron.down";
    content.items = {
        {localizer_.text("Choose preset durations…"), "", SettingsAction::choosePresets},
        {localizer_.text("About Wakeloft"), "", SettingsAction::showAbout},
        {localizer_.text("Check for Updates…"), "", SettingsAction::checkForUpdates},
        {localizer_.text("Send Feedback"), "", SettingsAction::sendFeedback},
        {},
        {localizer_.text("Quit Wakeloft"), "q", SettingsAction::quit},
    };
    content.popup = popup_.get();
    content.failure = failure_.get();
    content.isRightToLeft = localizer_.isRightToLeft();
    return content;
}

void SettingsMenu::perform(SettingsAction action) {
    failure_.set("");
    switch (action) {
    case SettingsAction::none:
        break;
    case SettingsAction::choosePresets:
        show(SettingsPopupKind::settings);
        break;
    case SettingsAction::showAbout:
        show(SettingsPopupKind::about);
        break;
    case SettingsAction::checkForUpdates:
        shell_.checkForUpdates();
        break;
    case SettingsAction::sendFeedback:
        shell_.openPage(FeedbackLink::url(feedback_.appVersion, feedback_.macOSVersion, feedback_.language));
        break;
    case SettingsAction::quit:
        shell_.terminate();
        break;
    }
}

void SettingsMenu::popupClosed(SettingsPopupKind popup) {
    if (popup_.get() == popup)
        popup_.set(std::nullopt);
}

void SettingsMenu::report(std::string sentence) {
    failure_.set(std::move(sentence));
}

void SettingsMenu::show(SettingsPopupKind popup) {
    shell_.activate();
    popup_.set(popup);
}

} // namespace wakeloft
