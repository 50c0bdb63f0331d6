#include "SettingsMenu.h"
#include "twins/WordingTwins.h"

#include <gtest/gtest.h>

namespace wakeloft {
namespace {

TEST(Settings, OnePopoverReplacesTheOtherAndAFailureIsToldUntilTheNextCommand) {
    const ManualLocalizer localizer;
    SettingsMenu menu{localizer, {}, {[] {}, [] {}, [](const std::string&) {}, [] {}}};
    menu.perform(SettingsAction::choosePresets);
    menu.perform(SettingsAction::showAbout);
    menu.popupClosed(SettingsPopupKind::settings); // the one that was replaced
    EXPECT_EQ(menu.content().popup, SettingsPopupKind::about);
    menu.popupClosed(SettingsPopupKind::about);
    EXPECT_EQ(menu.content().popup, std::nullopt);
    menu.report("There is no browser.");
    EXPECT_EQ(menu.content().failure, "There is no browser.");
    menu.perform(SettingsAction::sendFeedback);
    EXPECT_EQ(menu.content().failure, "");
}

} // namespace
} // namespace wakeloft
