#include "twins/SessionTwins.h"

#include <gtest/gtest.h>

#include <limits>
#include <memory>

namespace wakeloft {
namespace {

using Stored = StoredAwakeIntent;
const Error denied = PlatformError{"org.example.Denied", -1, "The login manager said no."};

struct Controller : testing::Test {
    ManualClocks clocks;
    ManualBlocker blocker;
    ManualScheduler scheduler;
    ManualRecheck recheck;
    InMemoryAwakeIntentStore store{Stored::intent(AwakeIntent::off())};
    std::unique_ptr<AwakeController> session = launched(store.stored);
    int sessionCalls = 0;

    std::unique_ptr<AwakeController> launched(const Stored& stored) {
        store.stored = stored;
        auto controller =
            std::make_unique<AwakeController>(blocker, store, clocks, clocks, scheduler, recheck, true);
        controller->observeSession([this] { ++sessionCalls; });
        return controller;
    }
    void expectIdle() const {
        EXPECT_FALSE(session->isOn());
        EXPECT_FALSE(session->isRequested());
        EXPECT_EQ(session->remaining(), std::nullopt);
        EXPECT_EQ(session->lastFailure(), std::nullopt);
        EXPECT_FALSE(blocker.engaged);
        EXPECT_EQ(scheduler.date, std::nullopt);
        EXPECT_FALSE(store.isAwakeRequested());
    }
};

TEST_F(Controller, ATimedSessionIsSavedArmedAndEndsByItself) {
    const Date end = clocks.now() + 1800;
    session->turnOnFor(1800);
    EXPECT_TRUE(session->isOn());
    EXPECT_EQ(session->activeUntil(), end);
    EXPECT_EQ(store.stored, Stored::intent(AwakeIntent::until(end)));
    EXPECT_EQ(sessionCalls, 1);

    clocks.pass(1799);
    scheduler.fire(); // early: judged again, armed again
    EXPECT_TRUE(session->isOn());
    EXPECT_EQ(scheduler.date, end);
    clocks.pass(2);
    EXPECT_EQ(session->remaining(), 0.0);
    scheduler.fire();
    expectIdle();
    EXPECT_EQ(sessionCalls, 2);
}

TEST_F(Controller, AHalfHourEndsWithinASecondOfItsMeaningWhateverTheClocksDo) {
    struct Case {
        const char* what;
        Seconds wallJump;
        Seconds asleep;
        Seconds passesBeforeTheEnd;
    };
    // Ten minutes into thirty; where the clock is moved, only the re-check tells.
    for (const auto& [what, wallJump, asleep, passes] :
         {Case{"set back an hour", -3600, 0, 1200}, Case{"set forward an hour", 3600, 0, 0},
          Case{"set forward five minutes", 300, 0, 900}, Case{"slept through the end", 0, 4000, 0},
          Case{"slept ten minutes", 0, 600, 600}, Case{"slept and set back", -3600, 600, 600}}) {
        SCOPED_TRACE(what);
        session->turnOnFor(1800);
        clocks.pass(600);
        clocks.moveWall(wallJump);
        clocks.sleep(asleep);
        recheck.handler();
        if (passes > 0) {
            EXPECT_NEAR(*scheduler.date - clocks.now(), passes, 1e-3);
            clocks.pass(passes - 1);
            scheduler.fire();
            EXPECT_TRUE(session->isOn());
            clocks.pass(1);
            scheduler.fire();
        }
        expectIdle();
    }
}

TEST_F(Controller, ChangingASessionKeepsTheSameHold) {
    session->toggle();
    EXPECT_EQ(session->activeUntil(), std::nullopt);
    EXPECT_EQ(store.stored, Stored::intent(AwakeIntent::indefinite()));
    session->turnOnFor(3600);
    EXPECT_EQ(scheduler.date, clocks.now() + 3600);
    session->turnOnFor(std::nullopt);
    EXPECT_EQ(scheduler.date, std::nullopt);
    EXPECT_EQ(blocker.calls, std::vector<std::string>{"engage"});
    session->toggle();
    expectIdle();

    session->turnOnFor(-5);
    EXPECT_TRUE(session->isOn());
    scheduler.fire(); // overdue, it ends at once
    expectIdle();
    session->turnOnFor(60);
    session->turnOnFor(std::numeric_limits<Seconds>::quiet_NaN());
    expectIdle();
}

TEST_F(Controller, ARefusedStartStaysRequestedUntilItsDeadlineAndMayBeTriedAgain) {
    blocker.refusal = denied;
    session->turnOnFor(1800);
    EXPECT_FALSE(session->isOn());
    EXPECT_TRUE(session->isRequested());
    EXPECT_EQ(session->lastFailure(), AwakeFailure(denied));
    EXPECT_TRUE(store.isAwakeRequested());
    EXPECT_EQ(sessionCalls, 1);
    clocks.pass(1800);
    scheduler.fire();
    expectIdle();
    EXPECT_EQ(blocker.calls, std::vector<std::string>{"engage"}); // nothing held, nothing released

    session->toggle();
    blocker.refusal.reset();
    session->toggle();
    EXPECT_TRUE(session->isOn());
    EXPECT_EQ(session->activeUntil(), std::nullopt);
    EXPECT_EQ(session->lastFailure(), std::nullopt);
}

TEST_F(Controller, LaunchRestoresWhatWasAskedAndCleansUpWhatLapsedOrIsGarbled) {
    const auto ending = [this](Seconds seconds) {
        return Stored::intent(AwakeIntent::until(clocks.now() + seconds));
    };
    const Seconds notANumber = std::numeric_limits<Seconds>::quiet_NaN();
    for (const auto& stored : {ending(0), ending(-1), ending(notANumber), Stored::unreadableDeadline()}) {
        session = launched(stored);
        expectIdle();
        EXPECT_TRUE(blocker.calls.empty());
    }
    blocker.refusal = denied;
    session = launched(ending(100));
    EXPECT_EQ(session->lastFailure(), AwakeFailure(denied));
    EXPECT_EQ(store.stored, ending(100)); // the next launch tries again
    blocker.refusal.reset();
    session = launched(ending(100));
    EXPECT_TRUE(session->isOn());
    EXPECT_EQ(scheduler.date, clocks.now() + 100);
}

TEST_F(Controller, ALostHoldIsNeverShownAsOn) {
    session->turnOnFor(1800);
    blocker.holdChanged(std::unexpected(denied));
    EXPECT_FALSE(session->isOn());
    EXPECT_TRUE(session->isRequested());
    EXPECT_EQ(session->lastFailure(), AwakeFailure(denied));
    EXPECT_EQ(sessionCalls, 2);
    EXPECT_NE(scheduler.date, std::nullopt);

    blocker.shortfall = denied; // taken again, in part
    blocker.holdChanged({});
    EXPECT_TRUE(session->isOn());
    EXPECT_EQ(session->lastFailure(), std::nullopt);
    EXPECT_EQ(session->limitation(), AwakeFailure(denied));
    EXPECT_EQ(sessionCalls, 3);

    blocker.holdChanged(std::unexpected(denied));
    session->turnOff(); // lets go of what the blocker would take again
    EXPECT_EQ(blocker.calls.back(), "release");
    blocker.holdChanged({});
    expectIdle();
    EXPECT_EQ(session->limitation(), std::nullopt);
}

} // namespace
} // namespace wakeloft
