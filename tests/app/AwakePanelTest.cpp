#include "AwakePanel.h"
#include "twins/SessionTwins.h"

#include <gtest/gtest.h>

namespace wakeloft {
namespace {

using Kind = PanelAction::Kind;

struct PlainFormatter final : DurationFormatter {
    [[nodiscard]] std::string units(HoursAndMinutes duration, Width width, const Locale&) const override {
        const auto total = std::to_string(duration.hours * 60 + duration.minutes);
        return total + (width == Width::spoken ? " minutes" : " min");
    }
    [[nodiscard]] std::string time(std::int64_t seconds, TimePattern, const Locale&) const override {
        return std::to_string(seconds) + " s";
    }
};

struct PlainLocalizer final : Localizer {
    bool isArabic = false;
    using Localizer::text;
    [[nodiscard]] std::string text(Table, const char* key) const override { return key; }
    [[nodiscard]] bool isRightToLeft() const override { return isArabic; }
};

struct Panel : testing::Test {
    ManualClocks clocks;
    ManualBlocker blocker;
    ManualScheduler scheduler;
    ManualRecheck recheck;
    InMemoryAwakeIntentStore store{StoredAwakeIntent::intent(AwakeIntent::off())};
    AwakeController controller{blocker, store, clocks, clocks, scheduler, recheck, true};
    PlainLocalizer localizer;
    PlainFormatter formatter;
    std::string shell;
    AwakePanel panel{
        controller, localizer, formatter, {}, {[this] { shell += "open "; }, [this] { shell += "quit "; }}};
    const Error denied = PlatformError{"org.example.Denied", 0, "The login manager said no."};

    void clickMain() { panel.perform(panel.content().mainButton.action); }
};

TEST_F(Panel, OffOffersToTurnOnAndThePresets) {
    const auto content = panel.content();
    EXPECT_EQ(content.statusLine, "Off");
    EXPECT_EQ(content.spokenStatus, "Wakeloft, off");
    EXPECT_EQ(content.explanation, "Your Mac can sleep as usual.");
    EXPECT_EQ(content.mainButton.title, "Turn On");
    EXPECT_EQ(content.sessionCaption, "Stay awake for");
    ASSERT_EQ(content.sessionButtons.size(), 3U);
    EXPECT_EQ(content.sessionButtons[1].title, "60 min");
    EXPECT_EQ(content.sessionButtons[1].spokenLabel, "Stay awake for 60 minutes");
    EXPECT_FALSE(content.statusLineTicks);
    EXPECT_TRUE(content.notices.empty());
    clickMain();
    EXPECT_TRUE(controller.isOn());
    EXPECT_EQ(panel.content().statusLine, "On");
    EXPECT_EQ(panel.content().mainButton.title, "Turn Off");
    EXPECT_FALSE(panel.content().statusLineTicks);
    clickMain();
    EXPECT_FALSE(controller.isOn());
}

TEST_F(Panel, ATimedSessionCountsDownAndOffersToDropItsTimer) {
    panel.perform(panel.content().sessionButtons[0].action);
    clocks.pass(61.5);
    const auto content = panel.content();
    EXPECT_EQ(content.statusLine, "On · 1738 s left");
    EXPECT_EQ(content.spokenStatus, "Wakeloft, on, 28 minutes left");
    EXPECT_TRUE(content.statusLineTicks);
    EXPECT_TRUE(content.icon.showsTimerBadge);
    ASSERT_EQ(content.sessionButtons.size(), 1U);
    EXPECT_EQ(content.sessionButtons[0].title, "Stay awake without a timer");
    localizer.isArabic = true;
    EXPECT_EQ(panel.content().statusLine, "On · \u20661738 s\u2069 left");
    panel.perform(content.sessionButtons[0].action);
    EXPECT_EQ(controller.activeUntil(), std::nullopt);
    EXPECT_TRUE(controller.isOn());

    panel.perform({Kind::startSession, 50});
    EXPECT_EQ(panel.content().spokenStatus, "Wakeloft, on, less than a minute left");
    clocks.pass(60); // the timer has not fired yet
    panel.opened();
    EXPECT_EQ(panel.content().statusLine, "Off");
}

TEST_F(Panel, AFailureIsToldWithAWayOut) {
    blocker.refusal = denied;
    clickMain();
    auto content = panel.content();
    EXPECT_EQ(content.statusLine, "Off");
    EXPECT_EQ(content.icon, MenuBarIcon{});
    EXPECT_EQ(content.mainButton.title, "Turn On");
    ASSERT_EQ(content.notices.size(), 1U);
    EXPECT_EQ(content.notices[0].text, "The login manager said no.");
    ASSERT_TRUE(content.notices[0].link);
    EXPECT_EQ(content.notices[0].link->title, "Don't retry when Wakeloft opens");
    panel.perform(content.notices[0].link->action);
    EXPECT_TRUE(panel.content().notices.empty());
    EXPECT_FALSE(store.isAwakeRequested());

    blocker.refusal = SleepBlockerError::assertionFailed(-536870212);
    clickMain();
    EXPECT_EQ(panel.content().notices[0].text,
              "macOS couldn't keep your Mac awake (IOKit error -536870212).");
}

TEST_F(Panel, OtherTroubleIsToldUntilItIsOver) {
    int changes = 0;
    const auto observer = panel.changed().subscribe([&] { ++changes; });
    panel.report(AwakePanel::Trouble::settingsWrite, "The disk is full.");
    panel.report(AwakePanel::Trouble::settingsWrite, "The disk is full.");
    EXPECT_EQ(changes, 1);
    blocker.shortfall = denied;
    clickMain();
    ASSERT_EQ(panel.content().notices.size(), 2U);
    EXPECT_EQ(panel.content().notices[0].text, "Sleep is held off in part only. The login manager said no.");
    EXPECT_EQ(panel.content().notices[1].text, "The disk is full.");
    panel.report(AwakePanel::Trouble::settingsWrite, "");
    EXPECT_EQ(panel.content().notices.size(), 1U);
}

TEST_F(Panel, TheTrayOffersTheSameInItsMenu) {
    auto tray = panel.trayContent();
    EXPECT_EQ(tray.spokenLabel, "Wakeloft: off");
    ASSERT_EQ(tray.menu.size(), 8U);
    EXPECT_EQ(tray.menu[3].title, "Stay awake for 30 minutes");
    panel.perform(tray.menu[3].action);
    tray = panel.trayContent();
    EXPECT_EQ(tray.spokenLabel, "Wakeloft: on, timer running");
    EXPECT_EQ(tray.menu[2].title, "Turn Off");
    panel.perform(tray.menu[3].action);
    EXPECT_EQ(panel.trayContent().spokenLabel, "Wakeloft: on");
    panel.perform(tray.menu.front().action);
    panel.perform(tray.menu.back().action);
    EXPECT_EQ(shell, "open quit ");
}

} // namespace
} // namespace wakeloft
