#include "system/RunningApp.h"

#include <gtest/gtest.h>

#include <unistd.h>

#include <cstdlib>
#include <fstream>

namespace wakeloft {
namespace {

/// Runs where the login manager suspends an idle machine after two seconds, which it may notice up to half a
/// minute late.
struct IdleAction : testing::Test {
    RunningApp app;
    LoginManager loginManager{app.event()};

    static int suspends() {
        const char* folder = std::getenv("WAKELOFT_RIG_DIR");
        std::ifstream log(std::string(folder) + "/service-manager.log");
        int count = 0;
        for (std::string line; std::getline(log, line);)
            count += line.starts_with("StartUnit suspend.target");
        return count;
    }
    static bool suspendsWithin(int seconds) {
        const int before = suspends();
        for (int tenth = 0; tenth < seconds * 10; ++tenth) {
            if (suspends() > before)
                return true;
            usleep(100'000);
        }
        return false;
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
