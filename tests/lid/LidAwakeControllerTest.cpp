#include "lid/LidAwakeController.h"
#include "lid/InMemoryLidSleepBlocker.h"
#include "twins/LidTwins.h"
#include "twins/SessionTwins.h"

#include <gtest/gtest.h>

#include <limits>

namespace wakeloft {
namespace {

const Error denied = PlatformError{"org.example.Denied", -1, "The login manager said no."};
const Error silent = LidSleepBlockerError::helperUnavailable();
const Error refused =
    LidSleepBlockerError::helperRefused(LidHelperRefusal::settingUnwritten("disk full").reason());

struct Deepwake : testing::Test {
    ManualClocks clocks;
    ManualBlocker awakeBlocker;
    ManualScheduler awakeScheduler;
    ManualRecheck recheck;
    InMemoryAwakeIntentStore intents{false, std::nullopt};
    AwakeController awake{awakeBlocker, intents, clocks, clocks, awakeScheduler, recheck, true};
    InMemoryLidSleepBlocker blocker;
    InMemoryUserDefaults defaults;
    UserDefaultsLidAwakeStore store{defaults};
    ManualConditions conditions;
    ManualScheduler leases;
    ManualScheduler deadlines;
    LidAwakeController lid{awake, blocker, store, conditions, conditions, clocks, leases, deadlines};

    Deepwake() { lid.acknowledgeHeatWarning(); }
    void expectOff() const {
        EXPECT_FALSE(lid.isOn());
        EXPECT_FALSE(lid.isTurningOn());
        EXPECT_EQ(leases.date, std::nullopt);
        EXPECT_EQ(deadlines.date, std::nullopt);
        EXPECT_FALSE(blocker.isEngaged());
    }
    void expectFailure(const std::optional<Error>& error) const {
        EXPECT_EQ(lid.lastFailure(), error ? std::optional(AwakeFailure(*error)) : std::nullopt);
    }
    /// Leaves a reset in doubt for `reason`, with Deepwake off.
    void loseTheReset(const Error& reason) {
        ASSERT_TRUE(lid.turnOnJoiningSessionOr(7200));
        blocker.nextRevocationError = reason;
        lid.turnOff();
        expectFailure(reason);
    }
};

TEST_F(Deepwake, WaitsForTheHeatWarningToBeAcknowledged) {
    store.setHasAcknowledgedHeatWarning(false);
    lid.refresh();
    EXPECT_EQ(lid.refusal(), LidAwakeRefusal::unacknowledged);
    EXPECT_EQ(lid.precaution(), LidClosePrecaution::beforeFirstUse);
    EXPECT_FALSE(lid.turnOnJoiningSessionOr(7200));
    EXPECT_FALSE(awake.isOn());
    EXPECT_EQ(blocker.prepareCount, 0);
    lid.acknowledgeHeatWarning();
    EXPECT_TRUE(lid.turnOnFor(60));
    EXPECT_TRUE(defaults.boolean("com.wakeloft.acknowledgedHeatWarning"));
}

TEST_F(Deepwake, HoldsThirtySecondsAndRenewsEveryTen) {
    blocker.holdsReplies = true;
    EXPECT_TRUE(lid.turnOnJoiningSessionOr(7200));
    EXPECT_TRUE(lid.turnOnJoiningSessionOr(7200));
    EXPECT_EQ(blocker.unanswered.size(), 1U);
    EXPECT_TRUE(lid.isTurningOn());
    EXPECT_FALSE(lid.isOn());
    for (int renewal = 1; renewal < 3; ++renewal) {
        blocker.answerAll();
        EXPECT_EQ(blocker.leaseExpiry, clocks.now() + 30);
        EXPECT_EQ(leases.date, clocks.now() + 10);
        clocks.pass(10);
        leases.fire();
        EXPECT_TRUE(lid.isOn()); // also while the renewal is on its way
    }
    lid.turnOff();
    blocker.answerAll();
    expectOff();
    EXPECT_TRUE(awake.isOn());
}

TEST_F(Deepwake, JoinsTheSessionThatIsOnOrStartsItsOwn) {
    awake.turnOnFor(600);
    const auto end = awake.activeUntil();
    EXPECT_TRUE(lid.turnOnJoiningSessionOr(7200));
    EXPECT_EQ(lid.activeUntil(), end);
    EXPECT_EQ(deadlines.date, end);
    EXPECT_TRUE(lid.turnOnFor(1200));
    EXPECT_EQ(deadlines.date, clocks.now() + 1200);
    EXPECT_TRUE(lid.turnOnFor(std::nullopt));
    EXPECT_EQ(deadlines.date, std::nullopt);
    EXPECT_FALSE(lid.turnOnFor(std::numeric_limits<Seconds>::quiet_NaN()));
    EXPECT_TRUE(lid.isOn()); // nothing was touched
    EXPECT_TRUE(awake.isOn());

    lid.turnOff();
    awake.turnOnFor(600);
    clocks.sleep(601); // over, though its timer has not fired yet
    EXPECT_TRUE(lid.turnOnJoiningSessionOr(7200));
    EXPECT_EQ(lid.activeUntil(), clocks.now() + 7200);
}

TEST_F(Deepwake, EndsWithItsSession) {
    lid.turnOnFor(600);
    awake.turnOnFor(1800);
    clocks.pass(1700);
    deadlines.fire(); // early
    EXPECT_TRUE(lid.isOn());
    EXPECT_EQ(deadlines.date, awake.endsAt());
    clocks.pass(100);
    deadlines.fire(); // before the session's own timer
    EXPECT_FALSE(awake.isOn());
    expectOff();

    lid.turnOnFor(600);
    clocks.sleep(601);
    leases.fire(); // the renewal comes first
    EXPECT_FALSE(awake.isOn());
    expectOff();

    lid.turnOnFor(600);
    awakeBlocker.holdChanged(std::unexpected(denied));
    EXPECT_EQ(deadlines.date, clocks.now());
    awakeBlocker.holdChanged({}); // taken again at once
    EXPECT_EQ(deadlines.date, awake.endsAt());
    awake.turnOff();
    deadlines.fire();
    expectOff();
}

TEST_F(Deepwake, AStartThatFailsSaysWhy) {
    blocker.nextPreparationError = denied;
    EXPECT_FALSE(lid.turnOnFor(60));
    expectFailure(denied);
    EXPECT_FALSE(awake.isOn());
    lid.turnOff();
    expectFailure(std::nullopt);
    EXPECT_EQ(blocker.revokeCount, 0); // nothing was held

    awakeBlocker.refusal = denied;
    EXPECT_FALSE(lid.turnOnFor(60));
    expectFailure(denied);
    EXPECT_EQ(blocker.renewCount, 0);
    awakeBlocker.refusal.reset();
    EXPECT_TRUE(lid.turnOnFor(60));
    expectFailure(std::nullopt);
}

TEST_F(Deepwake, AFailedRenewalGivesTheLeaseBackAndLeavesTheSessionOn) {
    lid.turnOnFor(600);
    blocker.holdsReplies = true;
    blocker.nextRenewalError = refused;
    leases.fire();
    int settled = 0;
    lid.whenSettled([&] { ++settled; });
    blocker.answerNext(); // and is followed by a revoke
    EXPECT_EQ(settled, 0);
    blocker.answerNext();
    EXPECT_EQ(settled, 1);
    EXPECT_EQ(blocker.revokeCount, 1);
    expectOff();
    expectFailure(refused);
    EXPECT_TRUE(awake.isOn());
}

TEST_F(Deepwake, AResetInDoubtIsRetriedOneAtATimeAndOutranksAStart) {
    loseTheReset(silent);
    expectOff();
    blocker.nextRevocationError = denied;
    lid.turnOff();
    expectFailure(silent); // the first reason stays
    blocker.nextRevocationError = refused;
    lid.checkLease();
    expectFailure(refused); // until the helper gives its own

    blocker.holdsReplies = true;
    lid.checkLease();
    lid.checkLease();
    lid.turnOff();
    EXPECT_EQ(blocker.unanswered.size(), 1U);
    blocker.nextPreparationError = denied;
    EXPECT_FALSE(lid.turnOnFor(60));
    expectFailure(refused);
    blocker.answerAll();
    expectFailure(std::nullopt); // what failed meanwhile was not kept
    blocker.holdsReplies = false;

    loseTheReset(silent);
    EXPECT_TRUE(lid.turnOnFor(60)); // a confirmed lease ends the doubt
    expectFailure(std::nullopt);
    blocker.nextRenewalError = refused;
    blocker.nextRevocationError = silent; // of the renewal's own revoke
    leases.fire();
    expectFailure(silent);
    lid.checkLease();
    expectFailure(std::nullopt); // the failed renewal is over with it
}

TEST_F(Deepwake, WarnsOfWhatClosingTheLidWouldDoNow) {
    conditions.become({.isOnBattery = true, .hasExternalDisplay = false});
    EXPECT_EQ(lid.precaution(), LidClosePrecaution::none);
    lid.turnOnFor(60);
    EXPECT_EQ(lid.precaution(), LidClosePrecaution::noHeatPath);
    conditions.become({.isOnBattery = true, .hasExternalDisplay = true});
    EXPECT_EQ(lid.precaution(), LidClosePrecaution::none);
    conditions.current = {.isOnBattery = true, .hasExternalDisplay = false};
    lid.refresh();
    EXPECT_EQ(lid.precaution(), LidClosePrecaution::noHeatPath);
}

} // namespace
} // namespace wakeloft
