#include "AwakePanel.h"
#include "app/SessionWithDeepwake.h"
#include "twins/WordingTwins.h"

namespace wakeloft {
namespace {

using Kind = PanelAction::Kind;

struct Panel : SessionWithDeepwake {
    InMemoryLoginItem item{LoginItemState::disabled, true};
    LoginItemController login{item, false};
    InMemoryPresetDurationStore presetStore;
    PresetDurationsController presets{presetStore};
    ManualLocalizer localizer;
    ManualFormatter formatter;
    int timesOpened = 0;
    AwakePanel panel{
        {awake, lid, login, presets}, localizer, formatter, {"de"}, {[this] { ++timesOpened; }, {}}};
    const Error denied = PlatformError{"org.example.Denied", 0, "The login manager said no."};

    void clickMain() { panel.perform(panel.content().mainButton.action); }
};

TEST_F(Panel, ATimedSessionCountsDownAndOffersToDropItsTimer) {
    panel.perform(panel.content().sessionButtons.at(0).action);
    clocks.pass(61.5);
    const auto content = panel.content();
    EXPECT_EQ(content.spokenStatus, "Wakeloft, on, 28 minutes/de left");
    EXPECT_TRUE(content.icon.showsTimerBadge);
    EXPECT_EQ(panel.trayContent().spokenLabel, "Wakeloft: on, timer running");
    for (int seconds = 1738; seconds > 1730; --seconds) { // every second shows, and once
        EXPECT_EQ(panel.content().statusLine, "On · " + std::to_string(seconds) + " s left");
        clocks.pass(panel.untilStatusLineTicks().value());
    }
    localizer.isArabic = true;
    EXPECT_EQ(panel.content().statusLine, "On · \u20661730 s\u2069 left");
    ASSERT_EQ(content.sessionButtons.size(), 1U);
    panel.perform(content.sessionButtons[0].action);
    EXPECT_EQ(panel.content().statusLine, "On");
    EXPECT_EQ(panel.untilStatusLineTicks(), std::nullopt);
    EXPECT_EQ(panel.content().sessionButtons.size(), 3U);
    presets.pin({});
    EXPECT_EQ(panel.content().sessionCaption, "");
    clickMain();
    EXPECT_EQ(panel.content().statusLine, "Off");
}

TEST_F(Panel, DeepwakeIsOfferedOnceTheHeatWarningIsUnderstoodAndEndsWithTheSession) {
    panel.perform({Kind::deepwakeOn, 0}); // as from a menu that is older than the answer
    EXPECT_FALSE(awake.isOn());
    panel.perform(panel.content().deepwakeNotices.at(0).link.value().action);
    EXPECT_TRUE(panel.content().deepwakeNotices.empty());
    panel.perform(panel.content().deepwake.action);
    EXPECT_EQ(awake.remaining(), 7200);
    EXPECT_EQ(panel.content().explanation,
              "[D] Your Mac won't fall asleep until the session ends, even with the lid closed.");
    EXPECT_EQ(panel.trayContent().spokenLabel, "[D] Wakeloft: Deepwake on, timer running");
    EXPECT_EQ(panel.trayContent().menu.at(4).isChecked, true);
    panel.perform(panel.trayContent().menu.at(0).action);
    EXPECT_EQ(timesOpened, 1);
    conditions.become({.isOnBattery = true, .hasExternalDisplay = false});
    EXPECT_EQ(panel.content().deepwakeNotices.at(0).symbol, PanelNotice::Symbol::heat);
    panel.perform(panel.content().deepwake.action);
    EXPECT_TRUE(awake.isOn());
    for (const auto& end : {panel.content().mainButton.action, panel.trayContent().menu.at(2).action}) {
        panel.perform(panel.content().deepwake.action);
        EXPECT_TRUE(lid.isOn());
        panel.perform(end); // both
        EXPECT_FALSE(awake.isOn());
        EXPECT_FALSE(lid.isOn());
    }
    EXPECT_EQ(lidBlocker.revokeCount, 3);
}

TEST_F(Panel, EachFailureOfDeepwakeHasItsSentence) {
    lid.acknowledgeHeatWarning();
    const auto refused = [](const char* reason) { return LidSleepBlockerError::helperRefused(reason); };
    const std::vector<std::pair<Error, std::string>> sentences = {
        {LidSleepBlockerError::helperUnavailable(), "its helper is unavailable."},
        {LidSleepBlockerError::helperRequiresApproval(), "allow Wakeloft in System Settings"},
        {denied, "The login manager said no."},
        {refused("The sleep setting could not be read, so it was left as it is: no bus"),
         "nothing was changed (no bus)."},
        {refused("The sleep setting is already on, set by something other than Wakeloft, and was left as it "
                 "is."),
         "That setting was left as it is."},
        {refused("Something quite new."), "Something quite new."}};
    for (const auto& [error, sentence] : sentences) {
        lidBlocker.nextRenewalError = error;
        panel.perform({Kind::deepwakeOn, 0});
        EXPECT_NE(panel.content().deepwakeNotices.at(0).text.find(sentence), std::string::npos) << sentence;
    }
    panel.perform({Kind::deepwakeOn, 0});
    lidBlocker.nextRevocationError =
        refused("The sleep setting could not be put back, and the helper is still trying: stuck");
    panel.perform({Kind::deepwakeOff, 0});
    const auto notice = panel.content().deepwakeNotices.at(0).text;
    EXPECT_TRUE(notice.starts_with("[D] Your Mac may stay awake with the lid closed.")) << notice;
    EXPECT_TRUE(notice.ends_with("still trying (stuck).")) << notice;
    panel.opened(); // tries again
    EXPECT_TRUE(panel.content().deepwakeNotices.empty());
}

TEST_F(Panel, OpeningRefreshesTheLoginItemThenTheSessionThenDeepwake) {
    lid.acknowledgeHeatWarning();
    panel.perform({Kind::startSession, 50});
    panel.perform({Kind::deepwakeOn, 0});
    EXPECT_EQ(panel.content().spokenStatus, "Wakeloft, on, less than a minute left");
    clocks.pass(60);                                 // the timer has not fired yet
    item.current = LoginItemState::requiresApproval; // by the user, elsewhere
    item.isStable = false;
    std::string order;
    const auto noteLogin = login.changed().subscribe([&] { order += "login "; });
    const auto noteSession = awake.changed().subscribe([&] { order += "session "; });
    const auto noteLid = lid.changed().subscribe([&] { order += "lid "; });
    panel.opened();
    EXPECT_EQ(order, "login session lid ");
    EXPECT_EQ(panel.content().statusLine, "Off");
    EXPECT_FALSE(lid.isOn());

    const auto notices = panel.content().loginNotices;
    ASSERT_EQ(notices.size(), 2U);
    EXPECT_EQ(notices[0].link.value().title, "Open Login Items…");
    EXPECT_TRUE(notices[1].text.starts_with("Wakeloft isn't in Applications"));
    panel.perform(panel.content().openAtLogin.action);
    EXPECT_EQ(item.current, LoginItemState::disabled);
    EXPECT_TRUE(panel.content().loginNotices.empty());
}

TEST_F(Panel, TroubleIsToldWithAWayOutUntilItIsOver) {
    blocker.refusal = SleepBlockerError::assertionFailed(-536870212);
    clickMain();
    const auto failure = panel.content().notices.at(0);
    EXPECT_EQ(failure.text, "macOS couldn't keep your Mac awake (IOKit error -536870212).");
    panel.perform(failure.link.value().action); // does not retry
    EXPECT_TRUE(panel.content().notices.empty());
    EXPECT_FALSE(intents.isAwakeRequested());

    int changes = 0;
    const auto observer = panel.changed().subscribe([&] { ++changes; });
    for (const char* sentence : {"The disk is full.", "The disk is full."})
        panel.report(AwakePanel::Trouble::settingsWrite, sentence);
    EXPECT_EQ(changes, 1);
    blocker.refusal.reset();
    blocker.shortfall = denied;
    clickMain();
    const auto notices = panel.content().notices;
    ASSERT_EQ(notices.size(), 2U);
    EXPECT_EQ(notices[0].text, "Sleep is held off in part only. The login manager said no.");
    EXPECT_EQ(notices[1].text, "The disk is full.");
    panel.report(AwakePanel::Trouble::settingsWrite, "");
    EXPECT_EQ(panel.content().notices.size(), 1U);
}

} // namespace
} // namespace wakeloft
