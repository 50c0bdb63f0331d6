#include "PrivateSystem.h"
#include "SystemClocks.h"
#include "SystemDeadlineRecheckNotifier.h"
#include "TimerDeadlineScheduler.h"
#include "support/BusText.h"

#include <gtest/gtest.h>

namespace wakeloft {
namespace {

struct Timers : PrivateSystem {
    SystemDateProvider dates;
    std::string order;
};

TEST_F(Timers, OneDeadlineIsPendingAndWorkComesWhenItIsDue) {
    TimerDeadlineScheduler scheduler(event, dates);
    const Date start = dates.now();
    scheduler.scheduleAt(start + 0.06, [&] { order += "replaced"; });
    scheduler.scheduleAt(start + 0.12, [&] { order += "fired"; });
    EXPECT_TRUE(waitFor([&] { return !order.empty(); }));
    EXPECT_GE(dates.now().secondsSince1970, start.secondsSince1970 + 0.119);
    scheduler.scheduleAt(dates.now(), [&] { order += ", cancelled"; });
    scheduler.cancel();
    loop->performAfter(0.1, [&] { order += ", later"; });
    loop->perform([&] { order += ", now"; });
    EXPECT_TRUE(waitFor([&] { return order == "fired, now, later"; })) << order;
    loop->performAfter(3600, [&] { order += ", never"; }); // freed with the loop
    pass(20);
}

TEST_F(Timers, AWakeIsToldAndNoFallingAsleep) {
    BusConnection system(event, *loop);
    SystemDeadlineRecheckNotifier recheck(event, system, nullptr);
    recheck.observe([&] { order += "woken"; });
    std::string isGoingToSleep;
    const auto watch = matchBusSignal(observer.get(), "type='signal',member='PrepareForSleep'",
                                      [&](auto* signal) { isGoingToSleep += bodyText(signal); });
    startLoginManager();
    pass(100); // until the match is in place
    sd_bus_call_method(observer.get(), "org.freedesktop.login1", "/org/freedesktop/login1",
                       "org.freedesktop.login1.Manager", "Suspend", nullptr, nullptr, "b", 0);
    EXPECT_TRUE(waitFor([&] { return isGoingToSleep == "10"; }));
    pass(50);
    EXPECT_EQ(order, "woken");
}

} // namespace
} // namespace wakeloft
