#include "system/Laptop.h"
#include "system/RunningApp.h"

#include <gtest/gtest.h>

#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <vector>

namespace wakeloft {
namespace {

constexpr int patienceMs = 15'000;
constexpr double promptMs = 2000;
constexpr double watchMs = 1500; ///< an unheld machine with its lid shut sleeps many times meanwhile

/// The real program on a laptop whose owner has understood the heat warning.
struct DeepwakeApp : testing::Test {
    Laptop laptop;
    RunningApp app;
    bool isRunning = false;

    void SetUp() override {
        if (!Laptop::hasLid())
            GTEST_SKIP() << "there is no lid here; see rig/private-system --lid";
        app.putSettings(R"("com.wakeloft.acknowledgedHeatWarning": true)");
        ASSERT_EQ(laptop.locks(), 0);
    }
    void TearDown() override {
        if (!Laptop::hasLid())
            return;
        if (isRunning)
            app.stop();
        Laptop::setLid(false);
        laptop.settle();
    }
    void start() {
        app.start();
        isRunning = true;
        ASSERT_TRUE(app.isReady()) << app.output();
    }
    void startAndTurnOn() {
        ASSERT_NO_FATAL_FAILURE(start());
        EXPECT_EQ(app.act("deepwake-on"), "");
        ASSERT_TRUE(laptop.waitForLocks(1)) << app.output();
    }
    /// What it shows, once it has heard of the lease.
    void expectTitle(const std::string& title) {
        const auto limit = std::chrono::steady_clock::now() + std::chrono::seconds(3);
        while (app.trayTitle() != title && std::chrono::steady_clock::now() < limit)
            usleep(10'000);
        EXPECT_EQ(app.trayTitle(), title) << app.output();
    }
    /// Its exit code; negative for a signal.
    int end(int signal) {
        isRunning = false;
        app.process().signal(signal);
        return app.process().wait(patienceMs);
    }
    static void expectSleep(const char* what, const std::function<void()>& event) {
        const auto taken = Laptop::sleepsAfter(event, patienceMs);
        ASSERT_TRUE(taken) << what << ": the machine stays awake";
        EXPECT_LE(*taken, promptMs) << what;
        std::printf("lid shut, %s: asleep after %.0f ms\n", what, *taken);
    }
    static void expectAwake() {
        EXPECT_EQ(Laptop::sleepsAfter([] {}, watchMs), std::nullopt);
    }
    void openLid() {
        Laptop::setLid(false);
        laptop.settle();
    }
};

TEST_F(DeepwakeApp, KeepsALaptopAwakeAndLetsItSleepWhateverBecomesOfTheProgram) {
    ASSERT_NO_FATAL_FAILURE(start());
    EXPECT_EQ(app.act("turn-on"), "");
    ASSERT_NO_FATAL_FAILURE(expectSleep("an ordinary session", [] { Laptop::setLid(true); }));
    openLid();
    EXPECT_EQ(app.act("deepwake-on"), "");
    ASSERT_TRUE(laptop.waitForLocks(1)) << app.output();
    Laptop::setLid(true);
    expectAwake();
    expectTitle("Wakeloft: Deepwake on"); // it joined the session
    ASSERT_NO_FATAL_FAILURE(
        expectSleep("the session turned off", [this] { EXPECT_EQ(app.act("turn-off"), ""); }));

    EXPECT_EQ(end(SIGTERM), 0);

    openLid();
    ASSERT_NO_FATAL_FAILURE(startAndTurnOn());
    Laptop::setLid(true);
    expectAwake();
    ASSERT_NO_FATAL_FAILURE(expectSleep("the program killed", [this] { end(SIGKILL); }));

    openLid();
    ASSERT_NO_FATAL_FAILURE(startAndTurnOn());
    Laptop::setLid(true);
    expectAwake();
    // Asked to end, it gives the lease back first and asks nothing.
    ASSERT_NO_FATAL_FAILURE(expectSleep("the program ended", [this] { EXPECT_EQ(end(SIGTERM), 0); }));
    EXPECT_TRUE(laptop.waitForLocks(0));
}

TEST_F(DeepwakeApp, TakesTheLeaseAgainWhenItsHelperHasEnded) {
    ASSERT_NO_FATAL_FAILURE(startAndTurnOn());
    expectTitle("Wakeloft: Deepwake on, timer running");
    laptop.signalHelper(SIGKILL);
    EXPECT_TRUE(laptop.waitForLocks(0));
    // The next renewal, within ten seconds, reaches a new helper.
    EXPECT_TRUE(laptop.waitForLocks(1)) << app.output();
    expectTitle("Wakeloft: Deepwake on, timer running");
}

/// As many as WAKELOFT_LID_KILLS says: a thousand with `WAKELOFT_LID_KILLS=1000 ./test --
/// 'Deepwake.*Kills*'`.
TEST_F(DeepwakeApp, LeavesNoLockAfterManyKills) {
    constexpr int usualKills = 5;
    const char* asked = std::getenv("WAKELOFT_LID_KILLS");
    const int kills = std::max(1, asked == nullptr ? usualKills : std::atoi(asked));
    std::vector<double> times;
    for (int round = 0; round < kills; ++round) {
        ASSERT_NO_FATAL_FAILURE(startAndTurnOn()) << "round " << round;
        app.process().signal(SIGKILL);
        isRunning = false;
        const auto gone = laptop.waitForLocks(0);
        ASSERT_TRUE(gone) << "round " << round;
        times.push_back(*gone);
        app.process().wait(patienceMs);
    }
    std::ranges::sort(times);
    std::printf("the program killed %d times: lock gone after %.2f ms (median), %.2f ms (worst)\n", kills,
                times[times.size() / 2], times.back());
    EXPECT_LE(times.back(), promptMs);
    EXPECT_EQ(laptop.locks(), 0);
}

} // namespace
} // namespace wakeloft
