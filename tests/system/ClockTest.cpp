#include "support/Shell.h"
#include "system/Laptop.h"
#include "system/RunningApp.h"

#include <gtest/gtest.h>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace wakeloft {
namespace {

/// The program with its clocks in the test's hands; its timers are real.
struct Clock : testing::Test {
    RunningApp app;
    Laptop laptop;
    int pipe = -1;

    void SetUp() override {
        const auto path = (app.home() / "clock").string();
        ASSERT_EQ(mkfifo(path.c_str(), 0600), 0);
        pipe = open(path.c_str(), O_RDWR | O_CLOEXEC);
        app.start({"LD_PRELOAD=" WAKELOFT_CLOCK_SHIFT_LIBRARY, "WAKELOFT_CLOCK_SHIFT=" + path});
        ASSERT_TRUE(app.isReady()) << app.output();
    }
    void TearDown() override { close(pipe); }

    /// Starts a session, which is on after a while, and moves the clocks by seconds: when it ends, in
    /// seconds.
    void expectEnd(double length, double wall, double sinceBoot, double end) {
        constexpr std::int64_t second = 1'000'000'000;
        const std::int64_t order[] = {static_cast<std::int64_t>(wall) * second,
                                      static_cast<std::int64_t>(sinceBoot) * second};
        ASSERT_EQ(app.act("start-session", length), "");
        usleep(300'000);
        ASSERT_EQ(laptop.sessions(), 1);
        ASSERT_EQ(write(pipe, order, sizeof order), static_cast<ssize_t>(sizeof order));
        const auto gone = laptop.waitForSessions(0);
        ASSERT_TRUE(gone) << app.output();
        EXPECT_NEAR(*gone / 1000 + 0.3, end, 0.3);
        EXPECT_TRUE(app.showsTitle("Wakeloft: off"));
    }
    [[nodiscard]] std::string bootTimers() {
        return outputOf("grep -lz 'clockid: 7.*it_value: ([1-9]' /proc/" +
                        std::to_string(app.process().pid()) + "/fdinfo/* | wc -l");
    }
};

TEST_F(Clock, SetBackAnHourDoesNotStretchASession) {
    expectEnd(2, -3600, 0, 2);
}

TEST_F(Clock, SetForwardBringsTheEndByTheClockOnTheWall) {
    expectEnd(1800, 3600, 0, 0.3);
    expectEnd(1202, 3600 + 1200, 0, 2);
}

TEST_F(Clock, GoesOnWhileTheMachineSleeps) {
    expectEnd(1800, 4000, 4000, 0.3);
    expectEnd(1202, 4000 + 1200, 4000 + 1200, 2);
    EXPECT_EQ(bootTimers(), "0\n");
    EXPECT_EQ(app.act("start-session", 1800), "");
    EXPECT_EQ(bootTimers(), "1\n"); // which would end it without any event as well
}

} // namespace
} // namespace wakeloft
