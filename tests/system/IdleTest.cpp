#include "system/Laptop.h"
#include "system/RunningApp.h"

#include <gtest/gtest.h>

namespace wakeloft {
namespace {

/// Runs where the login manager suspends an idle machine after two seconds, which it may notice up to half a
/// minute late.
struct IdleAction : testing::Test {
    RunningApp app;
    LoginManager loginManager{app.event()};

    static bool suspendsWithin(int seconds) {
        return Laptop::sleepsAfter([] {}, seconds * 1000).has_value();
    }
};

TEST_F(IdleAction, IsHeldOffWhileOnAndTakenBeforeAndAfter) {
    constexpr int longEnough = 40;
    if (!LoginManager::isReal())
        GTEST_SKIP() << "the real login manager cannot run here";
    // A bus closes connections that have said nothing for half a minute.
    EXPECT_EQ(loginManager.count(), 0);
    EXPECT_EQ(app.trayTitle(), "");
    ASSERT_TRUE(suspendsWithin(longEnough)) << "without the program nothing suspends: the rig proves nothing";
    app.start();
    ASSERT_TRUE(app.isReady()) << app.output();
    EXPECT_EQ(app.act("turn-on"), "");
    ASSERT_EQ(loginManager.count(), 1);
    EXPECT_FALSE(suspendsWithin(longEnough));
    EXPECT_EQ(app.act("turn-off"), "");
    EXPECT_TRUE(suspendsWithin(longEnough));
}

} // namespace
} // namespace wakeloft
