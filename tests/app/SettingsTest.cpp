#include "AboutPopup.h"
#include "SettingsMenu.h"
#include "SettingsPopup.h"
#include "twins/SessionTwins.h"
#include "twins/WordingTwins.h"

#include <gtest/gtest.h>

namespace wakeloft {
namespace {

struct Settings : testing::Test {
    ManualLocalizer localizer;
    ManualFormatter formatter;
    std::string shell;
    SettingsMenu menu{localizer,
                      {"1.4", std::nullopt, "de"},
                      {[this] { shell += "activate "; }, [this] { shell += "update "; },
                       [this](const std::string& address) { shell += address + " "; },
                       [this] { shell += "terminate "; }}};

    void choose(std::size_t line) { menu.perform(menu.content().items.at(line).action); }
};

TEST_F(Settings, TheMenuOffersTheSecondaryCommands) {
    const auto content = menu.content();
    EXPECT_EQ(content.title, "Settings");
    EXPECT_EQ(content.symbol, "gearshape");
    EXPECT_EQ(content.trailingSymbol, "chevron.down");
    std::string lines;
    for (const auto& item : content.items)
        lines += item.title + (item.keyEquivalent.empty() ? "" : " (" + item.keyEquivalent + ")") + "|";
    EXPECT_EQ(lines, "Choose preset durations…|About Wakeloft|Check for Updates…|Send Feedback||"
                     "Quit Wakeloft (q)|");
    EXPECT_FALSE(content.isRightToLeft);
    EXPECT_EQ(content.menuPlace(228), (SettingsMenuContent::Place{-14, -14}));
    localizer.isArabic = true;
    EXPECT_TRUE(menu.content().isRightToLeft);
    EXPECT_EQ(menu.content().menuPlace(228), (SettingsMenuContent::Place{242, -14}));

    choose(2);
    choose(3);
    choose(5);
    EXPECT_TRUE(shell.starts_with("update https://"));
    EXPECT_TRUE(shell.ends_with("/de/feedback?app=1.4 terminate ")) << shell;
}

TEST_F(Settings, OnePopoverReplacesTheOther) {
    int changes = 0;
    const auto observer = menu.changed().subscribe([&] { ++changes; });
    choose(0);
    EXPECT_EQ(menu.content().popup, SettingsPopupKind::settings);
    choose(1);
    EXPECT_EQ(menu.content().popup, SettingsPopupKind::about);
    EXPECT_EQ(shell, "activate activate ");
    menu.popupClosed(SettingsPopupKind::settings); // the one that was replaced
    EXPECT_EQ(menu.content().popup, SettingsPopupKind::about);
    menu.popupClosed(SettingsPopupKind::about);
    EXPECT_EQ(menu.content().popup, std::nullopt);
    EXPECT_EQ(changes, 3);
    menu.report("There is no browser.");
    EXPECT_EQ(menu.content().failure, "There is no browser.");
    choose(3);
    EXPECT_EQ(menu.content().failure, "");
    EXPECT_EQ(changes, 5);
}

TEST_F(Settings, StarsAreGivenUpToThree) {
    InMemoryPresetDurationStore store;
    PresetDurationsController presets(store);
    SettingsPopup popup(presets, localizer, formatter, {"de"});
    const auto stars = [&] {
        std::string text;
        for (const auto& row : popup.content().rows)
            text += std::string(row.isStarred ? "*" : "-") + (row.isEnabled ? "" : "x");
        return text;
    };
    const auto content = popup.content();
    EXPECT_EQ(content.title, "Preset durations");
    EXPECT_EQ(content.hint, "Star up to three. If you don't star any, the panel shows no presets.");
    EXPECT_EQ(content.rows.at(3), (PresetRow{{14400}, "240 min/de", "240 minutes/de", "star", false, false}));
    EXPECT_EQ(content.rows.at(0).symbol, "star.fill");
    EXPECT_EQ(stars(), "***-x-x-x");
    popup.toggle({14400});
    EXPECT_EQ(stars(), "***-x-x-x");
    popup.toggle({3600});
    EXPECT_EQ(stars(), "*-*---");
    popup.toggle({28800});
    EXPECT_EQ(stars(), "*-x*-x-x*");
    EXPECT_EQ(store.pinnedSeconds(), (std::vector<Seconds>{1800, 7200, 28800}));
    for (const Seconds seconds : {1800, 7200, 28800})
        popup.toggle({seconds});
    EXPECT_EQ(stars(), "------"); // none at all is a choice, too
}

TEST_F(Settings, AboutTellsVersionAndYear) {
    struct NewYearsEve final : TimeZone {
        [[nodiscard]] Seconds secondsFromUtcAt(Date) const override { return 3600; }
    } zone;
    ManualClocks clocks;
    clocks.wall = 1767225600 - 1800; // half an hour to the new year in Greenwich
    const AboutPopup popup(localizer, AboutInfo{"1.4", "212"}, clocks, zone);
    auto content = popup.content();
    EXPECT_EQ(content.title, "Wakeloft");
    EXPECT_EQ(content.version, "Version 1.4 (212)");
    EXPECT_TRUE(content.copyright.starts_with("© 2026 ")) << content.copyright;
    localizer.isArabic = true;
    EXPECT_EQ(popup.content().version, "Version \u20661.4 (212)\u2069");
    EXPECT_EQ(AboutPopup(localizer, std::nullopt, clocks, zone).content().version, "");
}

} // namespace
} // namespace wakeloft
