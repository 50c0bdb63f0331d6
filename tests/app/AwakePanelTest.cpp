#include "AwakePanel.h"
#include "lid/InMemoryLidSleepBlocker.h"
#include "twins/LidTwins.h"
#include "twins/SessionTwins.h"
#include "twins/WordingTwins.h"

#include <gtest/gtest.h>

namespace wakeloft {
namespace {

using Kind = PanelAction::Kind;

struct Panel : testing::Test {
    ManualClocks clocks;
    ManualBlocker blocker;
    ManualScheduler scheduler;
    ManualRecheck recheck;
    InMemoryAwakeIntentStore store{StoredAwakeIntent::intent(AwakeIntent::off())};
    AwakeController controller{blocker, store, clocks, clocks, scheduler, recheck, true};
    InMemoryLidSleepBlocker lidBlocker;
    InMemoryLidAwakeStore lidStore;
    ManualConditions conditions;
    ManualScheduler renewals, lidDeadline;
    LidAwakeController lid{controller, lidBlocker, lidStore, conditions,
                           conditions, clocks,     renewals, lidDeadline};
    InMemoryLoginItem item{LoginItemState::disabled, true};
    LoginItemController login{item, false};
    InMemoryPresetDurationStore presetStore;
    PresetDurationsController presets{presetStore};
    ManualLocalizer localizer;
    ManualFormatter formatter;
    std::string shell;
    AwakePanel panel{{controller, lid, login, presets},
                     localizer,
                     formatter,
                     {"de"},
                     {[this] { shell += "open "; }, [this] { shell += "quit "; }}};
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
    EXPECT_EQ(content.sessionButtons[1].title, "60 min/de");
    EXPECT_EQ(content.sessionButtons[1].spokenLabel, "Stay awake for 60 minutes/de");
    EXPECT_TRUE(content.notices.empty());
    clickMain();
    EXPECT_TRUE(controller.isOn());
    EXPECT_EQ(panel.content().statusLine, "On");
    EXPECT_EQ(panel.content().mainButton.title, "Turn Off");
    EXPECT_EQ(panel.untilStatusLineTicks(), std::nullopt);
    clickMain();
    EXPECT_FALSE(controller.isOn());
}

TEST_F(Panel, ATimedSessionCountsDownAndOffersToDropItsTimer) {
    panel.perform(panel.content().sessionButtons[0].action);
    clocks.pass(61.5);
    const auto content = panel.content();
    EXPECT_EQ(content.statusLine, "On · 1738 s left");
    EXPECT_EQ(content.spokenStatus, "Wakeloft, on, 28 minutes/de left");
    EXPECT_TRUE(content.icon.showsTimerBadge);
    for (int seconds = 1737; seconds > 1730; --seconds) { // every second shows, and once
        clocks.pass(panel.untilStatusLineTicks().value());
        EXPECT_EQ(panel.content().statusLine, "On · " + std::to_string(seconds) + " s left");
    }
    ASSERT_EQ(content.sessionButtons.size(), 1U);
    EXPECT_EQ(content.sessionButtons[0].title, "Stay awake without a timer");
    localizer.isArabic = true;
    EXPECT_EQ(panel.content().statusLine, "On · \u20661731 s\u2069 left");
    panel.perform(content.sessionButtons[0].action);
    EXPECT_EQ(controller.activeUntil(), std::nullopt);
    EXPECT_TRUE(controller.isOn());

    panel.perform({Kind::startSession, 50});
    EXPECT_EQ(panel.content().spokenStatus, "Wakeloft, on, less than a minute left");
    clocks.pass(60); // the timer has not fired yet
    panel.opened();
    EXPECT_EQ(panel.content().statusLine, "Off");
}

TEST_F(Panel, DeepwakeIsOfferedOnceTheHeatWarningIsUnderstood) {
    auto content = panel.content();
    EXPECT_FALSE(content.deepwake.isEnabled);
    ASSERT_EQ(content.deepwakeNotices.size(), 1U);
    EXPECT_EQ(content.deepwakeNotices[0].symbol, PanelNotice::Symbol::heat);
    panel.perform(content.deepwake.action); // as from a menu that is older than the answer
    EXPECT_FALSE(controller.isOn());
    panel.perform(content.deepwakeNotices[0].link->action);

    content = panel.content();
    EXPECT_TRUE(content.deepwakeNotices.empty());
    EXPECT_TRUE(content.deepwake.isEnabled);
    EXPECT_EQ(panel.trayContent().menu[6].isChecked, false);
    panel.perform(content.deepwake.action);
    content = panel.content();
    EXPECT_TRUE(content.deepwake.isOn);
    EXPECT_EQ(content.explanation,
              "[D] Your Mac won't fall asleep until the session ends, even with the lid closed.");
    EXPECT_EQ(controller.remaining(), 7200);
    EXPECT_TRUE(content.icon.keepsLidClosedAwake);
    const auto tray = panel.trayContent();
    EXPECT_EQ(tray.spokenLabel, "[D] Wakeloft: Deepwake on, timer running");
    EXPECT_EQ(tray.menu[4].isChecked, true);
    conditions.become({.isOnBattery = true, .hasExternalDisplay = false});
    ASSERT_EQ(panel.content().deepwakeNotices.size(), 1U);
    EXPECT_FALSE(panel.content().deepwakeNotices[0].link);

    panel.perform(content.deepwake.action);
    EXPECT_FALSE(panel.content().deepwake.isOn);
    EXPECT_TRUE(controller.isOn());
    panel.perform(panel.content().deepwake.action);
    clickMain(); // ends both
    EXPECT_FALSE(lid.isOn());
    EXPECT_FALSE(controller.isOn());
    EXPECT_EQ(lidBlocker.revokeCount, 2);
}

TEST_F(Panel, EachFailureOfDeepwakeHasItsSentence) {
    lid.acknowledgeHeatWarning();
    const auto refused = [](const char* reason) { return LidSleepBlockerError::helperRefused(reason); };
    const std::vector<std::pair<Error, std::string>> sentences = {
        {LidSleepBlockerError::helperUnavailable(),
         "[D] Deepwake can't start because its helper is unavailable."},
        {LidSleepBlockerError::helperRequiresApproval(),
         "[D] To use Deepwake, allow Wakeloft in System Settings, then turn it on again."},
        {denied, "The login manager said no."},
        {refused("The sleep setting could not be read, so it was left as it is: no bus"),
         "[D] Deepwake can't start because its helper couldn't read the sleep setting, so nothing was "
         "changed "
         "(no bus)."},
        {refused("The sleep setting could not be written: busy"),
         "[D] Deepwake can't start because its helper couldn't change the sleep setting (busy)."},
        {refused("The lease deadline is not a number."),
         "[D] Deepwake can't start because its helper was sent an end time it couldn't read."},
        {refused("The sleep setting is already on, set by something other than Wakeloft, and was left as it "
                 "is."),
         "[D] Deepwake can't start because something other than Wakeloft already keeps your Mac awake with "
         "the "
         "lid closed. That setting was left as it is."},
        {refused("The sleep setting was turned off by something other than Wakeloft, and was left off."),
         "[D] Deepwake stopped because something other than Wakeloft changed the sleep setting. Closing the "
         "lid "
         "works as usual again."},
        {refused("Something quite new."), "Something quite new."}};
    for (const auto& [error, sentence] : sentences) {
        lidBlocker.nextRenewalError = error;
        panel.perform({Kind::deepwakeOn, 0});
        ASSERT_EQ(panel.content().deepwakeNotices.size(), 1U) << sentence;
        EXPECT_EQ(panel.content().deepwakeNotices[0].text, sentence);
        EXPECT_EQ(panel.content().deepwakeNotices[0].symbol, PanelNotice::Symbol::failure);
    }

    panel.perform({Kind::deepwakeOn, 0});
    lidBlocker.nextRevocationError =
        refused("The sleep setting could not be put back, and the helper is still trying: stuck");
    panel.perform({Kind::deepwakeOff, 0});
    ASSERT_EQ(panel.content().deepwakeNotices.size(), 1U);
    EXPECT_EQ(panel.content().deepwakeNotices[0].text,
              "[D] Your Mac may stay awake with the lid closed. Deepwake's helper couldn't restore the sleep "
              "setting and is still trying (stuck).");
    panel.opened(); // tries again
    EXPECT_TRUE(panel.content().deepwakeNotices.empty());
}

TEST_F(Panel, ThePresetsAreTheStarredOnes) {
    presets.pin({{28800}, {1800}});
    auto content = panel.content();
    ASSERT_EQ(content.sessionButtons.size(), 2U);
    EXPECT_EQ(content.sessionButtons[1].title, "480 min/de");
    EXPECT_EQ(panel.trayContent().menu[4].title, "Stay awake for 8 hours");
    presets.pin({});
    content = panel.content();
    EXPECT_TRUE(content.sessionButtons.empty());
    EXPECT_TRUE(content.sessionCaption.empty());
}

TEST_F(Panel, OpenAtLoginFollowsTheSystem) {
    EXPECT_FALSE(panel.content().openAtLogin.isOn);
    panel.perform(panel.content().openAtLogin.action);
    EXPECT_TRUE(panel.content().openAtLogin.isOn);
    EXPECT_TRUE(panel.content().loginNotices.empty());
    item.current = LoginItemState::requiresApproval; // by the user, elsewhere
    item.isStable = false;
    panel.opened();
    const auto notices = panel.content().loginNotices;
    ASSERT_EQ(notices.size(), 2U);
    ASSERT_TRUE(notices[0].link);
    EXPECT_EQ(notices[0].link->title, "Open Login Items…");
    EXPECT_TRUE(notices[1].text.starts_with("Wakeloft isn't in Applications"));
    panel.perform(panel.content().openAtLogin.action);
    EXPECT_EQ(item.current, LoginItemState::disabled);
    EXPECT_TRUE(panel.content().loginNotices.empty());
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
    EXPECT_EQ(symbolName(content.notices[0].symbol), "exclamationmark.triangle.fill");
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
    ASSERT_EQ(tray.menu.size(), 9U);
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
