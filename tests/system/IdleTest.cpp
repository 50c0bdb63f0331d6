#include "system/Laptop.h"
#include "system/RunningApp.h"

#include <gtest/gtest.h>

namespace wakeloft {
namespace {

/// Runs where the login manager suspends an idle machine after two seconds, which it may notice up to half a
/// minute late.
TEST(IdleAction, IsHeldOffWhileOnAndTakenBeforeAndAfter) {
    RunningApp app;
    Laptop laptop;
    const auto suspends = [] {
        constexpr double longEnoughMs = 40'000;
        return Laptop::sleepsAfter([] {}, longEnoughMs).has_value();
    };
    if (!Laptop::isReal())
        GTEST_SKIP() << "the real login manager cannot run here";
    // A bus closes connections that have said nothing for half a minute.
    EXPECT_EQ(laptop.inhibitors(), 0);
    EXPECT_EQ(app.trayTitle(), "");
    ASSERT_TRUE(suspends()) << "without the program nothing suspends: the rig proves nothing";
    app.start();
    ASSERT_TRUE(app.isReady()) << app.output();
    EXPECT_EQ(app.act("turn-on"), "");
    ASSERT_EQ(laptop.sessions(), 1);
    EXPECT_FALSE(suspends());
    EXPECT_EQ(app.act("turn-off"), "");
    EXPECT_TRUE(suspends());
}

} // namespace
} // namespace wakeloft
