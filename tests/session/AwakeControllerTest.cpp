#include "twins/SessionTwins.h"

#include <gtest/gtest.h>

#include <limits>
#include <memory>
#include <thread>

namespace wakeloft {
namespace {

const Error denied = PlatformError{"org.example.Denied", -1, "The login manager said no."};

struct Controller : testing::Test {
    ManualClocks clocks;
    ManualBlocker blocker;
    ManualScheduler scheduler;
    ManualRecheck recheck;
    InMemoryAwakeIntentStore store{StoredAwakeIntent::intent(AwakeIntent::off())};
    std::unique_ptr<AwakeController> controller;
    int sessionCalls = 0;
    int changes = 0;
    Subscription subscription;

    AwakeController& start(StoredAwakeIntent stored = StoredAwakeIntent::intent(AwakeIntent::off()),
                           bool restoring = true) {
        store.stored = stored;
        controller =
            std::make_unique<AwakeController>(blocker, store, clocks, clocks, scheduler, recheck, restoring);
        controller->observeSession([this] { ++sessionCalls; });
        subscription = controller->changed().subscribe([this] { ++changes; });
        return *controller;
    }
    void expectIdle() const {
        EXPECT_FALSE(controller->isOn());
        EXPECT_FALSE(controller->isRequested());
        EXPECT_EQ(controller->endsAt(), std::nullopt);
        EXPECT_EQ(controller->remaining(), std::nullopt);
        EXPECT_EQ(controller->lastFailure(), std::nullopt);
        EXPECT_FALSE(blocker.engaged);
        EXPECT_EQ(scheduler.date, std::nullopt);
        EXPECT_FALSE(store.isAwakeRequested());
    }
};

TEST_F(Controller, ATimedSessionIsSavedArmedAndEndsByItself) {
    auto& session = start();
    const Date end = clocks.now() + 1800;
    session.turnOnFor(1800);
    EXPECT_TRUE(session.isOn());
    EXPECT_EQ(session.activeUntil(), end);
    EXPECT_EQ(scheduler.date, end);
    EXPECT_EQ(store.stored, StoredAwakeIntent::intent(AwakeIntent::until(end)));
    EXPECT_EQ(sessionCalls, 1);
    EXPECT_EQ(changes, 1);

    clocks.pass(1799);
    scheduler.fire(); // early: judged again, armed again
    EXPECT_TRUE(session.isOn());
    EXPECT_EQ(scheduler.date, end);
    clocks.pass(2);
    EXPECT_EQ(session.remaining(), 0.0);
    scheduler.fire();
    expectIdle();
    EXPECT_EQ(blocker.calls, (std::vector<std::string>{"engage", "release"}));
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
        auto& session = start();
        session.turnOnFor(1800);
        clocks.pass(600);
        clocks.moveWall(wallJump);
        clocks.sleep(asleep);
        recheck.handler();
        if (passes > 0) {
            EXPECT_NEAR(*scheduler.date - clocks.now(), passes, 1e-3);
            clocks.pass(passes - 1);
            scheduler.fire();
            EXPECT_TRUE(session.isOn());
            clocks.pass(1);
            scheduler.fire();
        }
        expectIdle();
    }
}

TEST_F(Controller, ChangingASessionKeepsTheSameHold) {
    auto& session = start();
    session.toggle();
    EXPECT_EQ(session.activeUntil(), std::nullopt);
    EXPECT_EQ(store.stored, StoredAwakeIntent::intent(AwakeIntent::indefinite()));
    session.turnOnFor(3600);
    EXPECT_EQ(scheduler.date, clocks.now() + 3600);
    session.turnOnFor(std::nullopt);
    EXPECT_EQ(scheduler.date, std::nullopt);
    EXPECT_EQ(session.endsAt(), std::nullopt);
    EXPECT_EQ(blocker.calls, std::vector<std::string>{"engage"});
    session.toggle();
    expectIdle();
}

TEST_F(Controller, UnusableSecondsEndTheSessionAndOverdueOnesEndAtOnce) {
    auto& session = start();
    for (const Seconds seconds :
         {std::numeric_limits<Seconds>::infinity(), std::numeric_limits<Seconds>::quiet_NaN(),
          Date::distantFuture().secondsSince1970}) {
        session.turnOnFor(60);
        session.turnOnFor(seconds);
        expectIdle();
    }
    session.turnOnFor(-5);
    EXPECT_TRUE(session.isOn());
    EXPECT_EQ(session.remaining(), 0.0);
    scheduler.fire();
    expectIdle();
}

TEST_F(Controller, ARefusedStartStaysRequestedUntilItsDeadlineAndMayBeTriedAgain) {
    auto& session = start();
    blocker.refusal = denied;
    session.turnOnFor(1800);
    EXPECT_FALSE(session.isOn());
    EXPECT_TRUE(session.isRequested());
    EXPECT_EQ(session.lastFailure(), AwakeFailure(denied));
    EXPECT_TRUE(store.isAwakeRequested());
    EXPECT_EQ(sessionCalls, 1);
    clocks.pass(1800);
    scheduler.fire();
    expectIdle();
    EXPECT_EQ(blocker.calls, std::vector<std::string>{"engage"}); // nothing held, nothing released

    session.toggle();
    EXPECT_EQ(store.stored, StoredAwakeIntent::intent(AwakeIntent::indefinite()));
    blocker.refusal.reset();
    session.toggle();
    EXPECT_TRUE(session.isOn());
    EXPECT_EQ(session.lastFailure(), std::nullopt);
}

TEST_F(Controller, TurningOffWhileIdleStillRecordsAndTells) {
    auto& session = start();
    store.stored = StoredAwakeIntent::unreadableDeadline();
    session.turnOff();
    expectIdle();
    EXPECT_TRUE(blocker.calls.empty());
    EXPECT_EQ(sessionCalls, 1);
    EXPECT_EQ(changes, 0);
}

TEST_F(Controller, LaunchRestoresWhatWasAsked) {
    start(StoredAwakeIntent::intent(AwakeIntent::indefinite()));
    EXPECT_TRUE(controller->isOn());
    const Date end = clocks.now() + 100;
    start(StoredAwakeIntent::intent(AwakeIntent::until(end)));
    EXPECT_TRUE(controller->isOn());
    EXPECT_EQ(scheduler.date, end);
    EXPECT_EQ(store.awakeUntil(), end);

    blocker.refusal = denied;
    start(StoredAwakeIntent::intent(AwakeIntent::until(end)));
    EXPECT_EQ(controller->lastFailure(), AwakeFailure(denied));
    EXPECT_EQ(store.awakeUntil(), end); // the next launch tries again
}

TEST_F(Controller, LaunchCleansLapsedAndGarbledRequestsAway) {
    for (const auto& stored :
         {StoredAwakeIntent::intent(AwakeIntent::until(clocks.now() + -1)),
          StoredAwakeIntent::intent(AwakeIntent::until(clocks.now())),
          StoredAwakeIntent::intent(AwakeIntent::until(Date{std::numeric_limits<Seconds>::quiet_NaN()})),
          StoredAwakeIntent::unreadableDeadline()}) {
        start(stored);
        expectIdle();
        EXPECT_TRUE(blocker.calls.empty());
    }
    start(StoredAwakeIntent::unreadableDeadline(), false);
    EXPECT_TRUE(controller->isRequested());
    EXPECT_EQ(store.stored, StoredAwakeIntent::unreadableDeadline());
}

TEST_F(Controller, ALostHoldIsNeverShownAsOn) {
    auto& session = start();
    session.turnOnFor(1800);
    blocker.holdChanged(std::unexpected(denied));
    EXPECT_FALSE(session.isOn());
    EXPECT_TRUE(session.isRequested());
    EXPECT_EQ(session.lastFailure(), AwakeFailure(denied));
    EXPECT_EQ(sessionCalls, 2);
    EXPECT_NE(scheduler.date, std::nullopt);

    blocker.shortfall = denied; // taken again, in part
    blocker.holdChanged({});
    EXPECT_TRUE(session.isOn());
    EXPECT_EQ(session.lastFailure(), std::nullopt);
    EXPECT_EQ(session.limitation(), AwakeFailure(denied));
    EXPECT_EQ(sessionCalls, 3);

    blocker.holdChanged(std::unexpected(denied));
    session.turnOff(); // lets go of what the blocker would take again
    EXPECT_EQ(blocker.calls.back(), "release");
    blocker.holdChanged({});
    expectIdle();
    EXPECT_EQ(session.limitation(), std::nullopt);
}

TEST_F(Controller, ObserversSeeFinishedOperationsAndMayCallBack) {
    auto& session = start();
    bool seen = false;
    const auto observer = session.changed().subscribe([&] {
        seen = true;
        EXPECT_EQ(session.isOn(), session.isRequested());
        EXPECT_EQ(session.isOn(), scheduler.date.has_value());
    });
    session.observeSession([&] {
        if (session.isOn())
            session.turnOff();
    });
    session.turnOnFor(60);
    expectIdle();
    EXPECT_EQ(sessionCalls, 2);
    EXPECT_TRUE(seen);
}

TEST_F(Controller, PendingCallbacksOutliveItHarmlessly) {
    start().turnOnFor(60);
    subscription.end();
    controller.reset();
    clocks.pass(100);
    scheduler.fire();
    recheck.handler();
    blocker.holdChanged(std::unexpected(denied));
    EXPECT_EQ(blocker.calls, std::vector<std::string>{"engage"});
    EXPECT_TRUE(store.isAwakeRequested());
}

TEST_F(Controller, AnotherThreadStopsTheProcess) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    auto& session = start();
    session.turnOnFor(60);
    EXPECT_DEATH(std::thread([&] { static_cast<void>(session.endsAt()); }).join(), "off the main thread");
}

} // namespace
} // namespace wakeloft
