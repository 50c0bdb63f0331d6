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
    InMemoryUserDefaults defaults;
    UserDefaultsLidAwakeStore store{defaults};
    ManualConditions conditions;
    ManualScheduler leases;
    ManualScheduler deadlines;
    std::unique_ptr<LidAwakeController> lid = made(blocker);
    int changes = 0;
    Subscription subscription = lid->changed().subscribe([this] { ++changes; });

    std::unique_ptr<LidAwakeController> made(LidSleepBlocker& itsBlocker) {
        store.setHasAcknowledgedHeatWarning(true);
        return std::make_unique<LidAwakeController>(awake, itsBlocker, store, conditions, conditions, clocks,
                                                    leases, deadlines);
    }
    void expectOff() const {
        EXPECT_FALSE(lid->isOn());
        EXPECT_FALSE(lid->isTurningOn());
        EXPECT_EQ(leases.date, std::nullopt);
        EXPECT_EQ(deadlines.date, std::nullopt);
        EXPECT_FALSE(blocker.isEngaged());
    }
    void expectFailure(const std::optional<Error>& error) const {
        EXPECT_EQ(lid->lastFailure(), error ? std::optional(AwakeFailure(*error)) : std::nullopt);
    }
    /// Leaves a reset in doubt for `reason`, with Deepwake off.
    void loseTheReset(const Error& reason) {
        ASSERT_TRUE(lid->turnOnJoiningSessionOr(7200));
        blocker.nextRevocationError = reason;
        lid->turnOff();
        expectFailure(reason);
    }
};

TEST_F(Deepwake, WaitsForTheHeatWarningToBeAcknowledged) {
    store.setHasAcknowledgedHeatWarning(false);
    lid->refresh();
    EXPECT_EQ(lid->refusal(), LidAwakeRefusal::unacknowledged);
    EXPECT_EQ(lid->precaution(), LidClosePrecaution::beforeFirstUse);
    EXPECT_FALSE(lid->turnOnJoiningSessionOr(7200));
    EXPECT_FALSE(awake.isOn());
    EXPECT_EQ(blocker.prepareCount, 0);
    lid->acknowledgeHeatWarning();
    EXPECT_TRUE(lid->turnOnFor(60));
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
    EXPECT_EQ(deadlines.date, std::nullopt);
    EXPECT_FALSE(lid->turnOnFor(std::numeric_limits<Seconds>::quiet_NaN()));
    EXPECT_TRUE(lid->isOn()); // nothing was touched
    EXPECT_TRUE(awake.isOn());

    lid->turnOff();
    awake.turnOnFor(600);
    clocks.sleep(601); // over, though its timer has not fired yet
    EXPECT_TRUE(lid->turnOnJoiningSessionOr(7200));
    EXPECT_EQ(lid->activeUntil(), clocks.now() + 7200);
}

TEST_F(Deepwake, EndsWithItsSession) {
    lid->turnOnFor(600);
    awake.turnOnFor(1800);
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

    lid->turnOnFor(600);
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
    EXPECT_FALSE(lid->turnOnFor(60));
    expectFailure(denied);
    EXPECT_FALSE(awake.isOn());
    lid->turnOff();
    expectFailure(std::nullopt);
    EXPECT_EQ(blocker.revokeCount, 0); // nothing was held

    awakeBlocker.refusal = denied;
    EXPECT_FALSE(lid->turnOnFor(60));
    expectFailure(denied);
    EXPECT_EQ(blocker.renewCount, 0);
    awakeBlocker.refusal.reset();
    EXPECT_TRUE(lid->turnOnFor(60));
    expectFailure(std::nullopt);

    UnavailableLidSleepBlocker nobody;
    lid = made(nobody);
    EXPECT_FALSE(lid->turnOnFor(60));
    expectFailure(silent);
    EXPECT_TRUE(lid->isSettled());
}

TEST_F(Deepwake, AFailedRenewalGivesTheLeaseBackAndLeavesTheSessionOn) {
    int settled = 0;
    lid->whenSettled([&] { ++settled; });
    EXPECT_EQ(settled, 1);
    for (const bool isFirst : {true, false}) {
        SCOPED_TRACE(isFirst);
        blocker.holdsReplies = false;
        if (!isFirst)
            lid->turnOnFor(600);
        blocker.holdsReplies = true;
        blocker.revokeCount = 0;
        blocker.nextRenewalError = refused;
        if (isFirst)
            EXPECT_TRUE(lid->turnOnFor(600));
        else
            leases.fire();
        settled = 0;
        lid->whenSettled([&] {
            ++settled;
            lid->whenSettled([&] { ++settled; });
        });
        blocker.answerNext(); // and is followed by a revoke
        EXPECT_EQ(settled, 0);
        blocker.answerNext();
        EXPECT_EQ(settled, 2);
        EXPECT_EQ(blocker.revokeCount, 1);
        expectOff();
        expectFailure(refused);
        EXPECT_TRUE(awake.isOn());
    }
    EXPECT_TRUE(lid->turnOnFor(600));
    blocker.answerAll();
    EXPECT_EQ(settled, 2);
}

TEST_F(Deepwake, AResetInDoubtIsRetriedOneAtATimeAndOutranksAStart) {
    loseTheReset(silent);
    expectOff();
    blocker.nextRevocationError = denied;
    lid->turnOff();
    expectFailure(silent); // the first reason stays
    blocker.nextRevocationError = refused;
    lid->checkLease();
    expectFailure(refused); // until the helper gives its own

    blocker.holdsReplies = true;
    lid->checkLease();
    lid->checkLease();
    lid->turnOff();
    EXPECT_EQ(blocker.unanswered.size(), 1U);
    blocker.nextPreparationError = denied;
    EXPECT_FALSE(lid->turnOnFor(60));
    expectFailure(refused);
    blocker.answerAll();
    expectFailure(std::nullopt); // what failed meanwhile was not kept
    blocker.holdsReplies = false;

    loseTheReset(silent);
    EXPECT_TRUE(lid->turnOnFor(60)); // a confirmed lease ends the doubt
    expectFailure(std::nullopt);
    blocker.nextRenewalError = refused;
    blocker.nextRevocationError = silent; // of the renewal's own revoke
    leases.fire();
    expectFailure(silent);
    lid->checkLease();
    expectFailure(std::nullopt); // the failed renewal is over with it
}

TEST_F(Deepwake, WarnsOfWhatClosingTheLidWouldDoNow) {
    conditions.become({.isOnBattery = true, .hasExternalDisplay = false});
    EXPECT_EQ(lid->precaution(), LidClosePrecaution::none);
    lid->turnOnFor(60);
    changes = 0;
    EXPECT_EQ(lid->precaution(), LidClosePrecaution::noHeatPath);
    conditions.become({.isOnBattery = true, .hasExternalDisplay = true});
    EXPECT_EQ(lid->precaution(), LidClosePrecaution::none);
    lid->refresh();
    EXPECT_EQ(changes, 1);
    conditions.current = {.isOnBattery = false, .hasExternalDisplay = false};
    lid->refresh();
    EXPECT_EQ(changes, 2);
    EXPECT_EQ(lid->precaution(), LidClosePrecaution::none);
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
    leases.fire();
    deadlines.fire();
    conditions.handler();
    awake.turnOff();
    EXPECT_TRUE(blocker.unanswered.empty());
    EXPECT_EQ(deadlines.date, clocks.now() + 600); // nobody moved it
}

} // namespace
} // namespace wakeloft
