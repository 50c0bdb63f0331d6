#include "lease/LidHelperLoop.h"

#include "lease/LidHelperService.h"
#include "lease/LidLeaseListener.h"
#include "twins/LeaseTwins.h"
#include "twins/SessionTwins.h"

#include <gtest/gtest.h>

#include <limits>

namespace wakeloft {
namespace {

struct ManualTimer final : OneShotTimer {
    std::optional<Seconds> armed;
    std::function<void()> action;

    void arm(Seconds seconds, std::function<void()> what) override {
        armed = seconds;
        action = std::move(what);
    }
    void cancel() override {
        armed.reset();
        action = nullptr;
    }
};

struct HelperLoop : testing::Test {
    ManualClocks clocks;
    ManualSleepSetting setting;
    ManualRunLoop mainLoop;
    ManualTimer timer;
    std::vector<std::string> lines;
    int ends = 0;
    Seconds paused = 0;
    LidSleepLeaseKeeper keeper{setting, clocks, clocks};
    LidLeaseService service{keeper, [this](const std::string& line) { lines.push_back(line); }};
    LidHelperLoop helper{service,
                         keeper,
                         {.dates = clocks,
                          .uptime = clocks,
                          .timer = timer,
                          .log = [this](const std::string& line) { lines.push_back(line); },
                          .settled = nullptr,
                          .end = [this] { ++ends; },
                          .pause =
                              [this](Seconds seconds) {
                                  paused += seconds;
                                  clocks.pass(seconds);
                              }}};
    LidLeaseListener listener{"anybody", helper.requests(mainLoop)};
    std::unique_ptr<LidLeaseConnection> first = listener.accept();
    std::unique_ptr<LidLeaseConnection> second = listener.accept();

    /// The answer to a renewal for `seconds` from now; empty: granted.
    std::string renew(const LidLeaseConnection& client, Seconds seconds) {
        std::string answer = "unanswered";
        client.renewLeaseUntil(clocks.wall + seconds,
                               [&](const std::optional<std::string>& text) { answer = text.value_or(""); });
        mainLoop.turn();
        return answer;
    }
    void revoke(const LidLeaseConnection& client) {
        client.revokeLease([] {});
        mainLoop.turn();
    }
    /// Lets the time of the timer pass, and fires it.
    void fire() {
        ASSERT_TRUE(timer.armed);
        clocks.pass(*timer.armed);
        std::exchange(timer.action, nullptr)();
    }
};

TEST_F(HelperLoop, OneTimerForWhatComesNextAndNoneAtRest) {
    EXPECT_FALSE(timer.armed);
    EXPECT_EQ(renew(*first, 20), "");
    EXPECT_EQ(renew(*second, 5), "");
    EXPECT_DOUBLE_EQ(*timer.armed, 5);
    fire();
    EXPECT_TRUE(setting.isDisabled);
    EXPECT_DOUBLE_EQ(*timer.armed, 15);
    fire();
    EXPECT_FALSE(setting.isDisabled);
    EXPECT_FALSE(timer.armed);

    renew(*first, 20);
    ASSERT_TRUE(timer.armed);
    revoke(*first);
    EXPECT_FALSE(timer.armed);
    renew(*first, 20);
    first->invalidated();
    mainLoop.turn();
    EXPECT_FALSE(setting.isDisabled);
    EXPECT_FALSE(timer.armed);
}

TEST_F(HelperLoop, TheEarlierEndOfBothClocksCounts) {
    renew(*first, 20);
    clocks.moveWall(15); // the clock is set forward
    helper.check();
    EXPECT_DOUBLE_EQ(*timer.armed, 5);
    clocks.moveWall(-3600); // and back: uptime goes on
    helper.check();
    EXPECT_DOUBLE_EQ(*timer.armed, 20);
    clocks.sleep(10); // a wake before the end
    helper.check();
    EXPECT_TRUE(setting.isDisabled);
    fire();
    EXPECT_FALSE(setting.isDisabled);

    renew(*first, 20);
    clocks.sleep(20.5); // the end passed asleep
    helper.check();
    EXPECT_FALSE(setting.isDisabled);
}

TEST_F(HelperLoop, AFailingWriteIsTriedAgainUntilItWorks) {
    renew(*first, 20);
    setting.writeError = PlatformError{"", 0, "Broken."};
    revoke(*first);
    EXPECT_NEAR(*timer.armed, LidSleepLease::retrySpacing, 1e-9);
    const auto tried = setting.writes.size();
    for (int round = 0; round < 4; ++round)
        fire();
    EXPECT_GE(setting.writes.size(), tried + 3);
    EXPECT_EQ(lines, std::vector<std::string>{
                         "The sleep setting could not be put back, and the helper is still trying: Broken."});
    setting.writeError.reset();
    fire();
    if (timer.armed) // rounding may have brought it a moment early
        fire();
    EXPECT_FALSE(setting.isDisabled);
    EXPECT_FALSE(timer.armed);
    EXPECT_EQ(lines.back(), "The sleep setting is as wanted again.");
}

TEST_F(HelperLoop, ASettingTurnedOffElsewhereIsToldToEachHolderOnce) {
    renew(*first, 20);
    renew(*second, 20);
    helper.checkStanding();
    EXPECT_TRUE(timer.armed); // nothing had changed
    setting.isDisabled = false;
    helper.checkStanding();
    helper.checkStanding();
    EXPECT_FALSE(timer.armed);
    EXPECT_EQ(lines, std::vector<std::string>{
                         "lease ended: disablesleep was set to 0 by something else; left at 0"});
    helper.check();
    EXPECT_FALSE(setting.isDisabled); // not taken again by itself
    for (const auto* client : {first.get(), second.get()}) {
        EXPECT_EQ(renew(*client, 20), LidLeaseService::yieldedReason());
        EXPECT_EQ(renew(*client, 20), "");
    }
}

TEST_F(HelperLoop, WhileItIsHeldBackOnlyWhatIsOwedIsTold) {
    renew(*first, 20);
    setting.isDisabled = false; // as the setting does by itself
    helper.holdBack("Not now.");
    helper.checkStanding();
    EXPECT_EQ(renew(*second, 20), "Not now.");
    EXPECT_EQ(renew(*first, 20), LidLeaseService::yieldedReason());
    EXPECT_EQ(renew(*first, 20), "Not now.");
    EXPECT_EQ(renew(*first, std::numeric_limits<double>::quiet_NaN()), "The lease deadline is not a number.");
    EXPECT_FALSE(setting.isDisabled);
    helper.holdBack(std::nullopt);
    EXPECT_EQ(renew(*first, 20), "");
}

TEST_F(HelperLoop, AReplacedProgramEndsWhenNothingIsItsToPutBack) {
    const auto replaced = LidHelperFileWatch::Finding::replaced("next");
    renew(*first, 20);
    helper.programFound(replaced);
    EXPECT_EQ(ends, 0);
    setting.writeError = PlatformError{"", 0, "Broken."};
    revoke(*first);
    EXPECT_EQ(ends, 0); // the reset is in doubt
    setting.writeError.reset();
    fire();
    if (ends == 0)
        fire();
    EXPECT_EQ(ends, 1);
    helper.check();
    EXPECT_EQ(ends, 1);
    helper.programFound(replaced); // at rest: at once
    EXPECT_EQ(ends, 2);
}

TEST_F(HelperLoop, AStopPutsTheSettingBackWithinItsWindow) {
    renew(*first, 20);
    setting.writeError = PlatformError{"", 0, "Broken."};
    const Seconds start = clocks.uptime();
    EXPECT_FALSE(helper.stop());
    EXPECT_GE(paused, LidHelperService::stopRetryWindow);
    EXPECT_LE(clocks.uptime() - start + LidSleepLease::writeTimeout, LidHelperService::exitTimeout);
    EXPECT_FALSE(timer.armed);
    setting.writeError.reset();
    paused = 0;
    EXPECT_TRUE(helper.stop());
    EXPECT_EQ(paused, 0);
    EXPECT_FALSE(setting.isDisabled);
    EXPECT_EQ(renew(*first, 20), "unanswered");
    EXPECT_FALSE(setting.isDisabled);
}

} // namespace
} // namespace wakeloft
