#include "PrivateSystem.h"
#include "SystemClocks.h"
#include "TimerDeadlineScheduler.h"

#include <gtest/gtest.h>

namespace wakeloft {
namespace {

TEST_F(PrivateSystem, OneDeadlineIsPendingAndWorkComesWhenItIsDue) {
    const SystemDateProvider dates;
    std::string order;
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

} // namespace
} // namespace wakeloft
