#include "SettingsMenu.h"
#include "twins/WordingTwins.h"

#include <gtest/gtest.h>

namespace wakeloft {
namespace {

TEST(Settings, OnePopoverReplacesTheOtherAndAFailureIsToldUntilTheNextCommand) {
    ManualLocalizer localizer;
    std::string shell;
    SettingsMenu menu{localizer,
                      {"1.4", std::nullopt, "de"},
                      {[&] { shell += "activate "; }, [&] { shell += "update "; },
                       [&](const std::string& address) { shell += address; }, [] {}}};
    int changes = 0;
    const auto observer = menu.changed().subscribe([&] { ++changes; });
    menu.perform(SettingsAction::choosePresets);
    menu.perform(SettingsAction::showAbout);
    menu.popupClosed(SettingsPopupKind::settings); // the one that was replaced
    EXPECT_EQ(menu.content().popup, SettingsPopupKind::about);
    menu.popupClosed(SettingsPopupKind::about);
    EXPECT_EQ(menu.content().popup, std::nullopt);
    EXPECT_EQ(changes, 3);
    menu.perform(SettingsAction::checkForUpdates);
    menu.report("There is no browser.");
    EXPECT_EQ(menu.content().failure, "There is no browser.");
    menu.perform(SettingsAction::sendFeedback);
    EXPECT_EQ(menu.content().failure, "");
    EXPECT_EQ(changes, 5);
    EXPECT_TRUE(shell.starts_with("activate activate update https://")) << shell;
    EXPECT_TRUE(shell.ends_with("/de/feedback?app=1.4")) << shell;
}

} // namespace
} // namespace wakeloft
