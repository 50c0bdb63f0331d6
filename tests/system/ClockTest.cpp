#include "system/RunningApp.h"

#include <gtest/gtest.h>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <chrono>

namespace wakeloft {
namespace {

constexpr int patienceMs = 10'000;

/// The program with its clocks in the test's hands; its timers are real.
struct Clock : testing::Test {
    RunningApp app;
    LoginManager loginManager{app.event()};
    int pipe = -1;
    double realtime = 0; ///< seconds by which its clocks differ from the machine's
    double boottime = 0;

    void SetUp() override {
        const auto path = (app.home() / "clock").string();
        ASSERT_EQ(mkfifo(path.c_str(), 0600), 0);
        pipe = open(path.c_str(), O_RDWR | O_CLOEXEC);
        app.start({"LD_PRELOAD=" WAKELOFT_CLOCK_SHIFT_LIBRARY, "WAKELOFT_CLOCK_SHIFT=" + path});
        ASSERT_TRUE(app.isReady()) << app.output();
    }
    void TearDown() override { close(pipe); }

    void move(double wall, double sinceBoot, bool isClockSet) {
        realtime += wall;
        boottime += sinceBoot;
        const std::int64_t order[] = {static_cast<std::int64_t>(realtime * 1e9),
                                      static_cast<std::int64_t>(boottime * 1e9), isClockSet};
        ASSERT_EQ(write(pipe, order, sizeof order), static_cast<ssize_t>(sizeof order));
    }
    void setClock(double by) { move(by, 0, true); }
    void sleep(double seconds) { move(seconds, seconds, true); }
    void pass(double seconds) { move(seconds, seconds, false); }

    /// Thirty minutes whose end comes after `seconds` more of real time.
    void startHalfHour() {
        ASSERT_EQ(app.act("start-session", 1800), "");
        ASSERT_EQ(loginManager.count(), 1);
    }
    void expectEndAfter(double seconds) {
        const auto gone = loginManager.waitForCount(0, patienceMs);
        ASSERT_TRUE(gone);
        EXPECT_NEAR(*gone / 1000, seconds, 1);
    }
};

TEST_F(Clock, SetBackAnHourDoesNotStretchAHalfHour) {
    startHalfHour();
    setClock(-3600);
    pass(1798);
    expectEndAfter(2);
}

TEST_F(Clock, SetForwardAnHourEndsAHalfHourAtOnce) {
    startHalfHour();
    usleep(300'000);
    EXPECT_EQ(loginManager.count(), 1);
    setClock(3600);
    expectEndAfter(0);
}

TEST_F(Clock, SetForwardTenMinutesEndsAHalfHourByTheClockOnTheWall) {
    startHalfHour();
    setClock(600);
    pass(1198);
    expectEndAfter(2);
}

TEST_F(Clock, AHalfHourSleptThroughEndsOnWaking) {
    startHalfHour();
    sleep(4000);
    expectEndAfter(0);
}

TEST_F(Clock, AHalfHourSleptThroughEndsByItsTimerAlone) {
    startHalfHour();
    pass(1798); // no event tells: only the timer on the boot-time clock does
    expectEndAfter(2);
}

TEST_F(Clock, SleptThroughInPartAHalfHourEndsOnTime) {
    startHalfHour();
    sleep(1200);
    usleep(300'000);
    EXPECT_EQ(loginManager.count(), 1);
    pass(598);
    expectEndAfter(1.7);
}

} // namespace
} // namespace wakeloft
