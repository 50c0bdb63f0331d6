#include "app/SessionWithDeepwake.h"

#include <limits>

namespace wakeloft {
namespace {

const Error denied = PlatformError{"org.example.Denied", -1, "The login manager said no."};
const Error silent = LidSleepBlockerError::helperUnavailable();
const Error refused =
    LidSleepBlockerError::helperRefused(LidHelperRefusal::settingUnwritten("disk full").reason());

struct Deepwake : SessionWithDeepwake {
    Deepwake() { lid.acknowledgeHeatWarning(); }

    void expectOff() const {
        EXPECT_FALSE(lid.isOn());
        EXPECT_FALSE(lid.isTurningOn());
        EXPECT_EQ(renewals.date, std::nullopt);
        EXPECT_EQ(lidDeadline.date, std::nullopt);
        EXPECT_FALSE(lidBlocker.isEngaged());
    }
    void expectFailure(const std::optional<Error>& error) const {
        EXPECT_EQ(lid.lastFailure(), error ? std::optional(AwakeFailure(*error)) : std::nullopt);
    }
    /// Leaves a reset in doubt for `reason`, with Deepwake off.
    void loseTheReset(const Error& reason) {
        ASSERT_TRUE(lid.turnOnJoiningSessionOr(7200));
        lidBlocker.nextRevocationError = reason;
        lid.turnOff();
        expectFailure(reason);
    }
};

TEST_F(Deepwake, WaitsForTheHeatWarningToBeAcknowledged) {
    lidStore.setHasAcknowledgedHeatWarning(false);
    lid.refresh();
    EXPECT_EQ(lid.refusal(), LidAwakeRefusal::unacknowledged);
    EXPECT_EQ(lid.precaution(), LidClosePrecaution::beforeFirstUse);
    EXPECT_FALSE(lid.turnOnJoiningSessionOr(7200));
    EXPECT_FALSE(awake.isOn());
    EXPECT_EQ(lidBlocker.prepareCount, 0);
    lid.acknowledgeHeatWarning();
    EXPECT_TRUE(lid.turnOnFor(60));
    EXPECT_TRUE(lidStore.hasAcknowledgedHeatWarning());

    InMemoryUserDefaults defaults;
    UserDefaultsLidAwakeStore(defaults).setHasAcknowledgedHeatWarning(true);
    EXPECT_TRUE(UserDefaultsLidAwakeStore(defaults).hasAcknowledgedHeatWarning());
}

TEST_F(Deepwake, HoldsThirtySecondsAndRenewsEveryTen) {
    lidBlocker.holdsReplies = true;
    EXPECT_TRUE(lid.turnOnJoiningSessionOr(7200));
    EXPECT_TRUE(lid.turnOnJoiningSessionOr(7200));
    EXPECT_EQ(lidBlocker.unanswered.size(), 1U);
    EXPECT_TRUE(lid.isTurningOn());
    EXPECT_FALSE(lid.isOn());
    for (int renewal = 1; renewal < 3; ++renewal) {
        lidBlocker.answerAll();
        EXPECT_EQ(lidBlocker.leaseExpiry, clocks.now() + 30);
        EXPECT_EQ(renewals.date, clocks.now() + 10);
        clocks.pass(10);
        renewals.fire();
        EXPECT_TRUE(lid.isOn()); // also while the renewal is on its way
    }
    lid.turnOff();
    lidBlocker.answerAll();
    expectOff();
    EXPECT_TRUE(awake.isOn());
}

TEST_F(Deepwake, JoinsTheSessionThatIsOnOrStartsItsOwn) {
    awake.turnOnFor(600);
    const auto end = awake.activeUntil();
    EXPECT_TRUE(lid.turnOnJoiningSessionOr(7200));
    EXPECT_EQ(lid.activeUntil(), end);
    EXPECT_EQ(lidDeadline.date, end);
    EXPECT_TRUE(lid.turnOnFor(1200));
    EXPECT_EQ(lidDeadline.date, clocks.now() + 1200);
    EXPECT_TRUE(lid.turnOnFor(std::nullopt));
    EXPECT_EQ(lidDeadline.date, std::nullopt);
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
    lidDeadline.fire(); // early
    EXPECT_TRUE(lid.isOn());
    EXPECT_EQ(lidDeadline.date, awake.endsAt());
    clocks.pass(100);
    lidDeadline.fire(); // before the session's own timer
    EXPECT_FALSE(awake.isOn());
    expectOff();

    lid.turnOnFor(600);
    clocks.sleep(601);
    renewals.fire(); // the renewal comes first
    EXPECT_FALSE(awake.isOn());
    expectOff();

    lid.turnOnFor(600);
    blocker.holdChanged(std::unexpected(denied));
    EXPECT_EQ(lidDeadline.date, clocks.now());
    blocker.holdChanged({}); // taken again at once
    EXPECT_EQ(lidDeadline.date, awake.endsAt());
    awake.turnOff();
    lidDeadline.fire();
    expectOff();
}

TEST_F(Deepwake, AStartThatFailsSaysWhy) {
    lidBlocker.nextPreparationError = denied;
    EXPECT_FALSE(lid.turnOnFor(60));
    expectFailure(denied);
    EXPECT_FALSE(awake.isOn());
    lid.turnOff();
    expectFailure(std::nullopt);
    EXPECT_EQ(lidBlocker.revokeCount, 0); // nothing was held

    blocker.refusal = denied;
    EXPECT_FALSE(lid.turnOnFor(60));
    expectFailure(denied);
    EXPECT_EQ(lidBlocker.renewCount, 0);
    blocker.refusal.reset();
    EXPECT_TRUE(lid.turnOnFor(60));
    expectFailure(std::nullopt);
}

TEST_F(Deepwake, AFailedRenewalGivesTheLeaseBackAndLeavesTheSessionOn) {
    lid.turnOnFor(600);
    lidBlocker.holdsReplies = true;
    lidBlocker.nextRenewalError = refused;
    renewals.fire();
    int settled = 0;
    lid.whenSettled([&] { ++settled; });
    lidBlocker.answerNext(); // and is followed by a revoke
    EXPECT_EQ(settled, 0);
    lidBlocker.answerNext();
    EXPECT_EQ(settled, 1);
    EXPECT_EQ(lidBlocker.revokeCount, 1);
    expectOff();
    expectFailure(refused);
    EXPECT_TRUE(awake.isOn());
}

TEST_F(Deepwake, AResetInDoubtIsRetriedOneAtATimeAndOutranksAStart) {
    loseTheReset(silent);
    expectOff();
    lidBlocker.nextRevocationError = denied;
    lid.turnOff();
    expectFailure(silent); // the first reason stays
    lidBlocker.nextRevocationError = refused;
    lid.checkLease();
    expectFailure(refused); // until the helper gives its own

    lidBlocker.holdsReplies = true;
    lid.checkLease();
    lid.checkLease();
    lid.turnOff();
    EXPECT_EQ(lidBlocker.unanswered.size(), 1U);
    lidBlocker.nextPreparationError = denied;
    EXPECT_FALSE(lid.turnOnFor(60));
    expectFailure(refused);
    lidBlocker.answerAll();
    expectFailure(std::nullopt); // what failed meanwhile was not kept
    lidBlocker.holdsReplies = false;

    loseTheReset(silent);
    EXPECT_TRUE(lid.turnOnFor(60)); // a confirmed lease ends the doubt
    expectFailure(std::nullopt);
    lidBlocker.nextRenewalError = refused;
    lidBlocker.nextRevocationError = silent; // of the renewal's own revoke
    renewals.fire();
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
