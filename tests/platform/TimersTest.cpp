#include "SdEventMainRunLoop.h"
#include "SystemClocks.h"
#include "SystemDeadlineRecheckNotifier.h"
#include "TimerDeadlineScheduler.h"
#include "support/PrivateBus.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <limits>
#include <memory>
#include <string>
#include <thread>

namespace wakeloft {
namespace {

struct Timers : testing::Test {
    std::unique_ptr<SdEventMainRunLoop> loop = std::move(SdEventMainRunLoop::create().value());
    SystemDateProvider dates;
    SystemContinuousTimeProvider continuous;
    std::string order;

    bool run(const std::function<bool()>& until, int timeoutMs = 2000) {
        return runUntil(loop->event(), until, timeoutMs);
    }
};

TEST_F(Timers, OneDeadlineIsPendingAndAnOverdueOneFiresPromptly) {
    TimerDeadlineScheduler scheduler(loop->event(), dates);
    scheduler.cancel();
    for (const Seconds offset : {-10.0, std::numeric_limits<Seconds>::quiet_NaN(), 0.12}) {
        order.clear();
        const Seconds start = continuous.continuousTime();
        scheduler.scheduleAt(dates.now() + 0.06, [&] { order += "replaced"; });
        scheduler.scheduleAt(dates.now() + offset, [&] { order += "fired"; });
        EXPECT_TRUE(run([&] { return !order.empty(); }));
        const Seconds waited = continuous.continuousTime() - start;
        EXPECT_GE(waited, offset > 0 ? offset - 0.001 : 0.05);
        EXPECT_LT(waited, 0.5);
        EXPECT_FALSE(run([&] { return order != "fired"; }, 100)) << order;
    }
    scheduler.scheduleAt(dates.now(), [&] { order = "cancelled"; });
    scheduler.cancel();
    EXPECT_FALSE(run([&] { return order == "cancelled"; }, 150));
}

TEST_F(Timers, AFiringDeadlineMayScheduleTheNext) {
    TimerDeadlineScheduler scheduler(loop->event(), dates);
    scheduler.scheduleAt(dates.now(), [&] {
        order += "1";
        scheduler.scheduleAt(dates.now(), [&] { order += "2"; });
    });
    EXPECT_TRUE(run([&] { return order == "12"; }));
    scheduler.scheduleAt(Date::distantFuture(), [&] { order += "never"; });
    EXPECT_FALSE(run([&] { return order != "12"; }, 50));
}

TEST_F(Timers, TheRunLoopTakesWorkFromAnyThreadInOrder) {
    loop->perform([&] {
        order += "a";
        loop->perform([&] { order += "c"; });
        order += "b";
    });
    EXPECT_EQ(order, "");
    std::thread([&] { loop->performAfter(0.05, [&] { order += "d"; }); }).join();
    loop->performAfter(std::numeric_limits<Seconds>::quiet_NaN(), [&] { order += "-"; });
    EXPECT_TRUE(run([&] { return order == "ab-cd"; })) << order;
    loop->performAfter(3600, [&] { order += "never"; }); // freed with the loop
    run([] { return false; }, 20);
}

TEST_F(Timers, AWakeIsToldToTheLatestHandlerOnly) {
    const PrivateBus bus;
    setenv("DBUS_SYSTEM_BUS_ADDRESS", bus.address().c_str(), 1);
    BusConnection system(loop->event(), *loop);
    const auto loginManager = bus.connect(loop->event());
    ASSERT_GE(sd_bus_request_name(loginManager.get(), "org.freedesktop.login1", 0), 0);
    std::string failures;
    SystemDeadlineRecheckNotifier recheck(loop->event(), system,
                                          [&](const PlatformError& error) { failures += error.description; });
    recheck.observe([&] { order += "old"; });
    recheck.observe([&] { order += "new"; });
    run([] { return false; }, 100); // until the match is in place
    const auto say = [&](const char* path, bool isGoingToSleep) {
        ASSERT_GE(sd_bus_emit_signal(loginManager.get(), path, "org.freedesktop.login1.Manager",
                                     "PrepareForSleep", "b", isGoingToSleep),
                  0);
    };
    say("/org/freedesktop/login1", true);
    say("/org/example", false);
    EXPECT_FALSE(run([&] { return !order.empty(); }, 100));
    say("/org/freedesktop/login1", false);
    EXPECT_TRUE(run([&] { return order == "new"; })) << order;
    EXPECT_EQ(failures, "");
}

} // namespace
} // namespace wakeloft
