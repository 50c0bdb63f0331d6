#include "support/Waiting.h"
#include "system/Laptop.h"
#include "system/RunningApp.h"

#include <gtest/gtest.h>

#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <optional>
#include <random>

namespace wakeloft {
namespace {

constexpr double promptMs = 2000;    ///< what needs no waiting, on a busy machine
constexpr double leaseMs = 30'000;   ///< of the real length
constexpr double restartMs = 20'000; ///< what needs a restart, which takes most of it

/// The real program and helper. Each test begins with proof that the lid puts this machine to sleep.
struct Lid : testing::Test {
    Laptop laptop;
    std::optional<RunningApp> app;
    double controlMs = 0; ///< how long the lid takes for that

    void SetUp() override {
        ASSERT_EQ(laptop.locks(), 0);
        ASSERT_NO_FATAL_FAILURE(expectSleep("not held", promptMs, Laptop::shutLid));
        laptop.openLid();
    }
    void TearDown() override {
        app.reset();
        laptop.openLid();
        EXPECT_TRUE(laptop.waitForLocks(0));
    }
    void expectSleep(const std::string& what, double promisedMs, const std::function<void()>& event) {
        constexpr double patienceMs = leaseMs + 10'000;
        const auto taken = Laptop::sleepsAfter(event, patienceMs);
        ASSERT_TRUE(taken) << what << ": the machine stays awake";
        if (controlMs == 0)
            controlMs = *taken;
        EXPECT_LE(*taken, promisedMs) << what;
        std::printf("lid shut, %s: asleep after %.0f ms, promised in %.0f\n", what.c_str(), *taken,
                    promisedMs);
    }
    /// Watches for so long that an unheld machine would have slept many times over.
    void expectAwake(double leastMs = 1000) {
        const double watchMs = std::max(leastMs, 10 * controlMs);
        EXPECT_FALSE(Laptop::sleepsAfter([this] { laptop.locks(); }, watchMs));
        ASSERT_EQ(laptop.locks(), 1);
    }
    /// A new program of a person who has understood the heat warning, on a machine whose lid is open.
    void start() {
        laptop.openLid();
        app.emplace();
        app->putSettings(R"("com.wakeloft.acknowledgedHeatWarning": true)");
        app->start();
        ASSERT_TRUE(app->isReady()) << app->output();
    }
    /// As often as a person would try: on a busy machine the helper may take longer to start than the program
    /// waits for its answer.
    void turnDeepwakeOn() {
        constexpr double patienceMs = 4000;
        const auto isOn = [this] {
            return laptop.locks() == 1 && app->trayTitle() == "Wakeloft: Deepwake on, timer running";
        };
        for (int tries = 0; tries < 5; ++tries) {
            EXPECT_EQ(app->act("deepwake-on"), "");
            comesTrue([this] { return laptop.locks() == 1; }, patienceMs);
            laptop.waitForHelpersAnswers(); // the title may be of before
            if (comesTrue(isOn, patienceMs))
                return;
            std::printf("Deepwake did not come on, and is asked for again: %s\n", app->trayTitle().c_str());
        }
        FAIL() << "Deepwake stays off: " << app->trayTitle() << "\n" << app->output();
    }
    /// With Deepwake on and the lid shut, seen to stay awake.
    void startAndShutLid() {
        ASSERT_NO_FATAL_FAILURE(start());
        ASSERT_NO_FATAL_FAILURE(turnDeepwakeOn());
        Laptop::shutLid();
        expectAwake();
    }
};

TEST_F(Lid, IsHeldOffByDeepwakeAloneAndOnlyAsLongAsTheProgramAsks) {
    ASSERT_NO_FATAL_FAILURE(start());
    EXPECT_EQ(app->act("turn-on"), "");
    ASSERT_NO_FATAL_FAILURE(expectSleep("an ordinary session", promptMs, Laptop::shutLid));
    EXPECT_EQ(laptop.sessions(), 1);

    const auto expectSleepAfter = [this](const char* what, double promisedMs,
                                         const std::function<void()>& event) {
        ASSERT_NO_FATAL_FAILURE(startAndShutLid());
        expectSleep(what, promisedMs, event);
        EXPECT_TRUE(laptop.waitForLocks(0));
    };
    expectSleepAfter("Deepwake turned off", promptMs, [this] { EXPECT_EQ(app->act("deepwake-off"), ""); });
    expectSleepAfter("the session turned off", promptMs, [this] { EXPECT_EQ(app->act("turn-off"), ""); });
    expectSleepAfter("the program killed", promptMs, [this] { app->process().signal(SIGKILL); });
    expectSleepAfter("the program ended", promptMs, [this] { app->stop(); }); // it asks nothing
    expectSleepAfter("the desktop's session ended", promptMs, [this] { app->endSessionBus(); });
}

TEST_F(Lid, IsHeldOffForOneLeaseWhenTheProgramHangs) {
    ASSERT_NO_FATAL_FAILURE(startAndShutLid());
    expectAwake(leaseMs + promptMs); // it is renewed
    expectSleep("the program hung", leaseMs + promptMs, [this] { app->process().signal(SIGSTOP); });
}

TEST_F(Lid, PutsTheMachineToSleepWhenTheHelperEnds) {
    for (const int signal : {SIGTERM, SIGKILL}) {
        ASSERT_NO_FATAL_FAILURE(startAndShutLid());
        expectSleep("the helper ended by signal " + std::to_string(signal), promptMs,
                    [&] { laptop.signalHelper(signal); });
        laptop.openLid();
        ASSERT_NO_FATAL_FAILURE(turnDeepwakeOn()); // all is well again
    }
    laptop.signalHelper(SIGKILL); // with the lid open
    EXPECT_TRUE(laptop.waitForLocks(0));
    EXPECT_TRUE(laptop.waitForLocks(1)) << app->output(); // by the next renewal, within ten seconds
    EXPECT_TRUE(app->showsTitle("Wakeloft: Deepwake on, timer running"));
}

/// As many as WAKELOFT_LID_KILLS says: a thousand with `WAKELOFT_LID_KILLS=1000 ./test -- 'Lid.*Kills'`.
TEST_F(Lid, IsNotHeldOffAfterManyKills) {
    constexpr int usualKills = 50;
    const char* asked = std::getenv("WAKELOFT_LID_KILLS");
    const int kills = std::max(1, asked == nullptr ? usualKills : std::atoi(asked));
    const auto startHolding = [this] {
        ASSERT_NO_FATAL_FAILURE(start());
        turnDeepwakeOn();
    };
    const auto killApp = [this] { app->process().signal(SIGKILL); };
    const auto lasting = laptop.lasting("the program", Laptop::lock, kills, startHolding, killApp);
    EXPECT_LE(lasting.median, promptMs);
    // On a busy machine the killed may live on for a while; leases last longer.
    constexpr double worstMs = leaseMs / 3;
    EXPECT_LE(lasting.worst, worstMs);
    const pid_t helper = laptop.helper();

    // Some die on their way to a lease, which then must not be kept for them.
    std::minstd_rand random;
    for (int round = 0; round < kills; ++round) {
        constexpr int wayMicroseconds = 10'000;
        ASSERT_NO_FATAL_FAILURE(start());
        EXPECT_EQ(app->act("deepwake-on"), "");
        usleep(static_cast<unsigned>(std::uniform_int_distribution(0, wayMicroseconds)(random)));
        killApp();
    }
    const auto gone = laptop.waitForLocks(0);
    ASSERT_TRUE(gone);
    EXPECT_LE(*gone, worstMs);
    EXPECT_EQ(laptop.helper(), helper); // the same all the time

    // The floor, what the login manager takes by itself: the helper holds the lock.
    constexpr int floorRounds = 9;
    laptop.lasting("the helper", Laptop::lock, floorRounds, startHolding,
                   [this] { laptop.signalHelper(SIGKILL); });
}

TEST_F(Lid, PutsTheMachineToSleepWhenTheLoginManagerOrTheBusRestarts) {
    for (const char* order :
         {"control-login-manager restart", "control-login-manager forget", "restart-bus"}) {
        ASSERT_NO_FATAL_FAILURE(startAndShutLid());
        expectSleep(order, restartMs, [order] { Laptop::order(order); });
        laptop.reconnect();
        EXPECT_TRUE(app->showsTitle("Wakeloft: on, timer running")); // told that Deepwake was turned off
        EXPECT_EQ(laptop.locks(), 0);
        laptop.openLid();
        ASSERT_NO_FATAL_FAILURE(turnDeepwakeOn()); // all is well again
    }
}

} // namespace
} // namespace wakeloft
