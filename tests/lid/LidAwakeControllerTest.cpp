#include "lid/LidAwakeController.h"
#include "lid/InMemoryLidSleepBlocker.h"
#include "lid/UnavailableLidSleepBlocker.h"
#include "twins/LidTwins.h"
#include "twins/SessionTwins.h"

#include <gtest/gtest.h>

#include <limits>
#include <memory>

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
    InMemoryLidAwakeStore store{true};
    ManualConditions conditions;
    ManualScheduler leases;
    ManualScheduler deadlines;
    std::unique_ptr<LidAwakeController> lid = std::make_unique<LidAwakeController>(
        awake, blocker, store, conditions, conditions, clocks, leases, deadlines);
    int changes = 0;
    Subscription subscription = lid->changed().subscribe([this] { ++changes; });

    void expectOff() const {
        EXPECT_FALSE(lid->isOn());
        EXPECT_FALSE(lid->isTurningOn());
        EXPECT_EQ(leases.date, std::nullopt);
        EXPECT_EQ(deadlines.date, std::nullopt);
        EXPECT_FALSE(blocker.isEngaged());
    }
    /// Leaves a reset in doubt for `reason`, with Deepwake off.
    void losesTheReset(const Error& reason) {
        ASSERT_TRUE(lid->turnOnJoiningSessionOr(7200));
        blocker.nextRevocationError = reason;
        lid->turnOff();
        EXPECT_EQ(lid->lastFailure(), AwakeFailure(reason));
    }
};

TEST_F(Deepwake, WaitsForTheHeatWarningToBeAcknowledged) {
    store.setHasAcknowledgedHeatWarning(false);
    lid->refresh();
    EXPECT_EQ(lid->refusal(), LidAwakeRefusal::unacknowledged);
    EXPECT_FALSE(lid->turnOnJoiningSessionOr(7200));
    EXPECT_FALSE(lid->turnOnFor(std::nullopt));
    EXPECT_FALSE(awake.isOn());
    EXPECT_EQ(blocker.prepareCount, 0);
    EXPECT_EQ(lid->lastFailure(), std::nullopt);

    InMemoryUserDefaults defaults;
    UserDefaultsLidAwakeStore saved(defaults);
    LidAwakeController fresh(awake, blocker, saved, conditions, conditions, clocks, leases, deadlines);
    EXPECT_EQ(fresh.refusal(), LidAwakeRefusal::unacknowledged);
    fresh.acknowledgeHeatWarning();
    EXPECT_EQ(fresh.refusal(), std::nullopt);
    EXPECT_TRUE(fresh.turnOnFor(60));
    EXPECT_TRUE(defaults.boolean("com.wakeloft.acknowledgedHeatWarning"));
}

TEST_F(Deepwake, HoldsThirtySecondsAndRenewsEveryTen) {
    blocker.holdsReplies = true;
    EXPECT_TRUE(lid->turnOnJoiningSessionOr(7200));
    EXPECT_TRUE(lid->turnOnJoiningSessionOr(7200));
    EXPECT_EQ(blocker.unanswered.size(), 1U);
    EXPECT_TRUE(lid->isTurningOn());
    EXPECT_FALSE(lid->isOn());
    EXPECT_EQ(leases.date, std::nullopt);
    blocker.answerAll();
    EXPECT_TRUE(lid->isOn());
    EXPECT_FALSE(lid->isTurningOn());
    EXPECT_EQ(changes, 2);

    for (int renewal = 1; renewal < 4; ++renewal) {
        EXPECT_EQ(blocker.leaseExpiry, clocks.now() + 30);
        EXPECT_EQ(leases.date, clocks.now() + 10);
        clocks.pass(10);
        leases.fire();
        EXPECT_TRUE(lid->isOn()); // also while the renewal is on its way
        lid->checkLease();
        EXPECT_EQ(blocker.unanswered.size(), 1U);
        blocker.answerAll();
    }
    EXPECT_EQ(changes, 2);
    lid->turnOff();
    blocker.answerAll();
    expectOff();
    EXPECT_TRUE(awake.isOn());
}

TEST_F(Deepwake, JoinsTheSessionThatIsOnOrStartsItsOwn) {
    awake.turnOnFor(600);
    const auto end = awake.activeUntil();
    EXPECT_TRUE(lid->turnOnJoiningSessionOr(7200));
    EXPECT_EQ(lid->activeUntil(), end);
    EXPECT_EQ(deadlines.date, end);
    EXPECT_TRUE(lid->turnOnFor(1200));
    EXPECT_EQ(deadlines.date, clocks.now() + 1200);
    EXPECT_TRUE(lid->turnOnFor(std::nullopt));
    EXPECT_EQ(lid->activeUntil(), std::nullopt);
    EXPECT_EQ(deadlines.date, std::nullopt);

    lid->turnOff();
    awake.turnOnFor(600);
    clocks.sleep(601); // over, though its timer has not fired yet
    EXPECT_TRUE(lid->turnOnJoiningSessionOr(7200));
    EXPECT_EQ(lid->activeUntil(), clocks.now() + 7200);

    for (const Seconds seconds :
         {std::numeric_limits<Seconds>::infinity(), std::numeric_limits<Seconds>::quiet_NaN()}) {
        EXPECT_FALSE(lid->turnOnFor(seconds));
        EXPECT_TRUE(lid->isOn()); // nothing was touched
        EXPECT_TRUE(awake.isOn());
    }
}

TEST_F(Deepwake, EndsWithItsSession) {
    lid->turnOnFor(600);
    awake.turnOnFor(1800);
    EXPECT_EQ(deadlines.date, clocks.now() + 1800);
    clocks.pass(1700);
    deadlines.fire(); // early
    EXPECT_TRUE(lid->isOn());
    EXPECT_EQ(deadlines.date, awake.endsAt());
    clocks.pass(100);
    deadlines.fire(); // before the session's own timer
    EXPECT_FALSE(awake.isOn());
    expectOff();

    lid->turnOnFor(600);
    clocks.sleep(601);
    leases.fire(); // the renewal comes first
    EXPECT_FALSE(awake.isOn());
    expectOff();

    lid->turnOnFor(std::nullopt);
    awake.turnOff();
    EXPECT_EQ(deadlines.date, clocks.now());
    deadlines.fire();
    expectOff();
    awake.turnOnFor(5); // of no concern any more
    EXPECT_EQ(deadlines.date, std::nullopt);
}

TEST_F(Deepwake, EndsWhenTheSystemTakesTheSessionAwayForGood) {
    lid->turnOnFor(600);
    awakeBlocker.holdChanged(std::unexpected(denied));
    EXPECT_EQ(deadlines.date, clocks.now());
    awakeBlocker.holdChanged({}); // taken again at once
    EXPECT_EQ(deadlines.date, awake.endsAt());
    EXPECT_TRUE(lid->isOn());
    awakeBlocker.holdChanged(std::unexpected(denied));
    deadlines.fire();
    expectOff();
}

TEST_F(Deepwake, AStartThatFailsSaysWhy) {
    blocker.nextPreparationError = denied;
    EXPECT_FALSE(lid->turnOnFor(60));
    EXPECT_EQ(lid->lastFailure(), AwakeFailure(denied));
    EXPECT_FALSE(awake.isOn());
    lid->turnOff();
    EXPECT_EQ(lid->lastFailure(), std::nullopt);
    EXPECT_EQ(blocker.revokeCount, 0); // nothing was held

    awakeBlocker.refusal = denied;
    EXPECT_FALSE(lid->turnOnFor(60));
    EXPECT_EQ(lid->lastFailure(), AwakeFailure(denied));
    EXPECT_EQ(blocker.renewCount, 0);
    awakeBlocker.refusal.reset();
    EXPECT_TRUE(lid->turnOnFor(60));
    EXPECT_EQ(lid->lastFailure(), std::nullopt);

    UnavailableLidSleepBlocker nobody;
    LidAwakeController alone(awake, nobody, store, conditions, conditions, clocks, leases, deadlines);
    EXPECT_FALSE(alone.turnOnFor(60));
    EXPECT_EQ(alone.lastFailure(), AwakeFailure(silent));
    EXPECT_TRUE(alone.isSettled());
}

TEST_F(Deepwake, AFailedRenewalGivesTheLeaseBackAndLeavesTheSessionOn) {
    for (const bool isFirst : {true, false}) {
        SCOPED_TRACE(isFirst);
        if (!isFirst)
            lid->turnOnFor(600);
        blocker.nextRenewalError = refused;
        if (isFirst)
            EXPECT_FALSE(lid->turnOnFor(600));
        else
            leases.fire();
        expectOff();
        EXPECT_EQ(blocker.revokeCount, isFirst ? 1 : 2);
        EXPECT_EQ(lid->lastFailure(), AwakeFailure(refused));
        EXPECT_TRUE(awake.isOn());
        EXPECT_TRUE(lid->isSettled());
    }
}

TEST_F(Deepwake, AnswersToASwitchedOffLeaseChangeNothing) {
    blocker.holdsReplies = true;
    blocker.nextRenewalError = silent;
    lid->turnOnFor(600);
    lid->turnOff();
    expectOff();
    ASSERT_EQ(blocker.unanswered.size(), 2U); // the revoke is on its way already
    lid->turnOnFor(600);
    lid->turnOff();
    lid->turnOnFor(600);
    ASSERT_EQ(blocker.unanswered.size(), 5U);
    for (int answer = 0; answer < 4; ++answer) {
        blocker.answerNext();
        EXPECT_TRUE(lid->isTurningOn()); // only the third start counts
        EXPECT_FALSE(lid->isOn());
        EXPECT_EQ(lid->lastFailure(), std::nullopt);
        EXPECT_FALSE(lid->isSettled());
    }
    blocker.answerNext();
    EXPECT_TRUE(lid->isOn());
    EXPECT_TRUE(lid->isSettled());

    lid->turnOff();
    lid->turnOff();
    EXPECT_EQ(blocker.unanswered.size(), 1U);
}

TEST_F(Deepwake, AResetInDoubtOutranksAStartAndIsRetriedOneAtATime) {
    losesTheReset(silent);
    expectOff();
    blocker.holdsReplies = true;
    const int revokes = blocker.revokeCount;
    lid->checkLease();
    lid->checkLease();
    lid->turnOff();
    EXPECT_EQ(blocker.unanswered.size(), 1U);

    blocker.nextPreparationError = denied;
    EXPECT_FALSE(lid->turnOnFor(60));
    awake.turnOff();
    awakeBlocker.refusal = denied;
    EXPECT_FALSE(lid->turnOnFor(60));
    EXPECT_EQ(lid->lastFailure(), AwakeFailure(silent));
    blocker.answerAll();
    EXPECT_EQ(blocker.revokeCount, revokes + 1);
    EXPECT_EQ(lid->lastFailure(), std::nullopt); // what failed meanwhile was not kept
    lid->checkLease();
    lid->turnOff();
    EXPECT_TRUE(lid->isSettled());
}

TEST_F(Deepwake, TheFirstReasonOfAResetInDoubtStaysUntilTheHelperGivesItsOwn) {
    losesTheReset(silent);
    blocker.nextRevocationError = denied;
    lid->turnOff();
    EXPECT_EQ(lid->lastFailure(), AwakeFailure(silent));
    blocker.nextRevocationError = refused;
    lid->checkLease();
    EXPECT_EQ(lid->lastFailure(), AwakeFailure(refused));

    EXPECT_TRUE(lid->turnOnFor(60)); // a confirmed lease ends the doubt
    EXPECT_EQ(lid->lastFailure(), std::nullopt);

    blocker.nextRenewalError = refused;
    blocker.nextRevocationError = silent; // of the renewal's own revoke
    leases.fire();
    EXPECT_EQ(lid->lastFailure(), AwakeFailure(silent));
    lid->checkLease();
    EXPECT_EQ(lid->lastFailure(), std::nullopt); // the failed renewal is over with it

    losesTheReset(silent);
    blocker.holdsReplies = true;
    blocker.nextRenewalError = refused;
    lid->turnOnFor(60);
    blocker.answerNext();
    EXPECT_EQ(lid->lastFailure(), AwakeFailure(silent));
    blocker.answerNext(); // given back after all: the start's own failure is left
    EXPECT_EQ(lid->lastFailure(), AwakeFailure(refused));
}

TEST_F(Deepwake, WhoWaitsForItToSettleIsCalledOnceAllIsAnswered) {
    std::string calls;
    lid->whenSettled([&] { calls += "now "; });
    EXPECT_EQ(calls, "now ");
    blocker.holdsReplies = true;
    blocker.nextRenewalError = refused;
    lid->turnOnFor(60);
    lid->whenSettled([&] {
        calls += "first ";
        lid->whenSettled([&] { calls += "inner "; });
    });
    lid->whenSettled([&] { calls += "second "; });
    blocker.answerNext(); // and is followed by a revoke
    EXPECT_EQ(calls, "now ");
    EXPECT_FALSE(lid->isSettled());
    blocker.answerNext();
    EXPECT_EQ(calls, "now first inner second ");
    lid->turnOnFor(60);
    blocker.answerAll();
    EXPECT_EQ(calls, "now first inner second ");
}

TEST_F(Deepwake, WarnsOfWhatClosingTheLidWouldDoNow) {
    conditions.become({.isOnBattery = true, .hasExternalDisplay = false});
    EXPECT_EQ(lid->precaution(), LidClosePrecaution::none);
    lid->turnOnFor(60);
    changes = 0;
    EXPECT_EQ(lid->precaution(), LidClosePrecaution::noHeatPath);
    conditions.become({.isOnBattery = true, .hasExternalDisplay = true});
    EXPECT_EQ(lid->precaution(), LidClosePrecaution::none);
    conditions.handler();
    lid->refresh();
    EXPECT_EQ(changes, 1);
    conditions.current = {.isOnBattery = false, .hasExternalDisplay = false};
    lid->refresh();
    EXPECT_EQ(changes, 2);
    EXPECT_EQ(lid->precaution(), LidClosePrecaution::none);

    for (const bool isOn : {false, true})
        EXPECT_EQ(LidClosePrecaution::shown(isOn, false, StaticMachineConditions(true, false).snapshot()),
                  LidClosePrecaution::beforeFirstUse);
}

TEST_F(Deepwake, TurningOffWhileItPreparesIsOvertakenByTheStart) {
    blocker.whilePreparing = [this] { lid->turnOff(); };
    EXPECT_TRUE(lid->turnOnFor(60));
    EXPECT_TRUE(lid->isOn());
    EXPECT_EQ(blocker.revokeCount, 0);
}

TEST_F(Deepwake, CallbacksOutliveItHarmlesslyAndAnObserverMayEndIt) {
    blocker.holdsReplies = true;
    lid->turnOnFor(600);
    bool isSettled = false;
    lid->whenSettled([&] { isSettled = true; });
    subscription = lid->changed().subscribe([&] { lid.reset(); });
    blocker.answerNext();
    EXPECT_EQ(lid, nullptr);
    EXPECT_TRUE(isSettled);
    const int renewals = blocker.renewCount;
    leases.fire();
    deadlines.fire();
    conditions.handler();
    awake.turnOff();
    blocker.answerAll();
    EXPECT_EQ(blocker.renewCount, renewals);
    EXPECT_EQ(blocker.revokeCount, 0);
    EXPECT_EQ(deadlines.date, std::optional(clocks.now() + 600)); // nobody moved it
}

} // namespace
} // namespace wakeloft
