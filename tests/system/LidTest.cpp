#include "system/Deepwake.h"
#include "system/Laptop.h"
#include "system/RunningApp.h"
#include "system/ServiceWatchdog.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <csignal>
#include <cstdio>

namespace wakeloft {
namespace {

constexpr int patienceMs = 15'000;
constexpr double promptMs = 2000;    ///< what needs no waiting, on a busy machine
constexpr double restartMs = 10'000; ///< what needs a restart, which takes most of it

/// Each test begins with proof that the lid puts this machine to sleep.
struct Lid : testing::Test {
    Laptop laptop;
    double controlMs = 0; ///< how long the lid takes for that

    void SetUp() override {
        if (!Laptop::hasLid())
            GTEST_SKIP() << "there is no lid here; see rig/private-system --lid";
        ASSERT_EQ(laptop.locks(), 0);
        ASSERT_NO_FATAL_FAILURE(expectSleep("not held", promptMs, [] { Laptop::setLid(true); }));
    }
    void TearDown() override {
        if (!Laptop::hasLid())
            return;
        openLid();
        EXPECT_TRUE(laptop.waitForLocks(0));
    }
    void openLid() {
        Laptop::setLid(false);
        laptop.settle();
    }
    void expectSleep(const char* what, double promisedMs, const std::function<void()>& event) {
        const auto taken = Laptop::sleepsAfter(event, patienceMs);
        ASSERT_TRUE(taken) << what << ": the machine stays awake";
        if (controlMs == 0)
            controlMs = *taken;
        EXPECT_LE(*taken, promisedMs) << what;
        std::printf("lid shut, %s: asleep after %.0f ms, promised in %.0f\n", what, *taken, promisedMs);
    }
    /// Watches for so long that an unheld machine would have slept many times over.
    void expectAwake(double leastMs = 1000) {
        const double watchMs = std::max(leastMs, 10 * controlMs);
        EXPECT_EQ(Laptop::sleepsAfter([this] { laptop.locks(); }, watchMs), std::nullopt);
    }
    /// Turns it on, shuts the lid and sees the machine stay awake.
    void holdShut(Deepwake& deepwake) {
        openLid();
        deepwake.turnOn();
        ASSERT_TRUE(laptop.waitForLocks(1));
        Laptop::setLid(true);
        expectAwake();
        ASSERT_EQ(laptop.locks(), 1);
    }
};

TEST_F(Lid, StaysAwakeWhileTheLeaseIsRenewedAndSleepsWhenItIsGivenBack) {
    Deepwake deepwake(Deepwake::shortSeconds);
    ASSERT_NO_FATAL_FAILURE(holdShut(deepwake));
    expectAwake(Deepwake::shortSeconds * 1500);
    expectSleep("turned off", promptMs, [&] { deepwake.turnOff(); });
}

TEST_F(Lid, SleepsWhenWhoAskedIsGone) {
    const auto expectSleepAfter = [this](const char* what, double leaseSeconds, double promisedMs, auto end) {
        Deepwake deepwake(leaseSeconds);
        ASSERT_NO_FATAL_FAILURE(holdShut(deepwake));
        expectSleep(what, promisedMs, [&] { (deepwake.*end)(); });
        EXPECT_TRUE(laptop.waitForLocks(0));
    };
    expectSleepAfter("client killed", Deepwake::usualSeconds, promptMs, &Deepwake::kill);
    expectSleepAfter("session ended", Deepwake::usualSeconds, promptMs, &Deepwake::logOut);
    expectSleepAfter("renewed no more", Deepwake::shortSeconds, Deepwake::shortSeconds * 1000 + promptMs,
                     &Deepwake::hang);
}

TEST_F(Lid, SleepsWhenTheHelperEnds) {
    for (const auto& [what, signal] :
         {std::pair("helper killed", SIGKILL), std::pair("helper ended", SIGTERM)}) {
        Deepwake deepwake;
        ASSERT_NO_FATAL_FAILURE(holdShut(deepwake));
        expectSleep(what, promptMs, [&, number = signal] { laptop.signalHelper(number); });
    }
}

TEST_F(Lid, SleepsWhenTheHelperHangs) {
    constexpr std::chrono::seconds limit(3); // its unit says 20
    const auto waitForHelper = [this](bool isThere) {
        for (int look = 0; look < patienceMs && (laptop.helper() != 0) != isThere; ++look)
            usleep(1000);
    };
    if (laptop.helper() != 0)
        laptop.signalHelper(SIGTERM);
    waitForHelper(false);
    ServiceWatchdog watchdog(Laptop::file("notify"), limit);
    const ChildProcess helper({"bash", Laptop::file("start-lid-helper")}, watchdog.environment());
    waitForHelper(true);
    ASSERT_EQ(laptop.helper(), helper.pid());
    EXPECT_FALSE(watchdog.watch(helper, limit + std::chrono::seconds(1))); // at rest it gives no sign
    EXPECT_EQ(watchdog.signs(), 0);
    Deepwake deepwake;
    ASSERT_NO_FATAL_FAILURE(holdShut(deepwake));
    EXPECT_FALSE(watchdog.watch(helper, limit + std::chrono::seconds(1)));
    EXPECT_GT(watchdog.signs(), 0);
    expectSleep("helper hangs", limit / std::chrono::milliseconds(1) + promptMs, [&] {
        helper.signal(SIGSTOP);
        EXPECT_TRUE(watchdog.watch(helper, limit + std::chrono::seconds(1)));
    });
}

TEST_F(Lid, IsLeftToARestartedLoginManagerThatKnowsTheLock) {
    if (!LoginManager::isReal())
        GTEST_SKIP() << "the embedded login manager forgets its inhibitors";
    Deepwake deepwake;
    ASSERT_NO_FATAL_FAILURE(holdShut(deepwake));
    for (const char* end : {"stop", "kill"}) {
        Laptop::order({"control-login-manager", end});
        Laptop::order({"control-login-manager", "start"});
        expectAwake();
        EXPECT_EQ(laptop.locks(), 1);
    }
    expectSleep("login manager restarted, then client killed", promptMs, [&] { deepwake.kill(); });
}

TEST_F(Lid, SleepsWhenTheLoginManagerForgetsTheLock) {
    Deepwake deepwake(Deepwake::shortSeconds);
    ASSERT_NO_FATAL_FAILURE(holdShut(deepwake));
    expectSleep("login manager restarted without its state", restartMs,
                [] { Laptop::order({"control-login-manager", "forget"}); });
    EXPECT_TRUE(deepwake.isRefused()); // told that it was turned off
    EXPECT_EQ(laptop.locks(), 0);
}

TEST_F(Lid, SleepsWhenTheBusIsRestarted) {
    Deepwake deepwake(Deepwake::shortSeconds);
    ASSERT_NO_FATAL_FAILURE(holdShut(deepwake));
    expectSleep("bus restarted", restartMs, [] { Laptop::order({"restart-bus"}); });
    laptop.reconnect();
    EXPECT_TRUE(deepwake.isRefused());
    EXPECT_EQ(laptop.locks(), 0);
    ASSERT_NO_FATAL_FAILURE(holdShut(deepwake)); // all is well again
}

TEST_F(Lid, SleepsWhereTheClientIsNotAllowedTo) {
    openLid();
    for (const char* answer : {"no", "never"}) {
        Laptop::order({"polkit", answer});
        Deepwake deepwake;
        deepwake.turnOn();
        EXPECT_EQ(deepwake.isRefused(1000), std::string(answer) == "no");
        EXPECT_EQ(laptop.locks(), 0);
        expectSleep((std::string("polkit says ") + answer).c_str(), promptMs, [] { Laptop::setLid(true); });
        openLid();
    }
    Laptop::order({"polkit", "yes"});
    Deepwake deepwake;
    deepwake.turnOn();
    EXPECT_TRUE(laptop.waitForLocks(1));
}

TEST_F(Lid, SleepsDuringAnOrdinarySession) {
    RunningApp app;
    LoginManager loginManager(app.event());
    openLid();
    app.start();
    ASSERT_TRUE(app.isReady()) << app.output();
    ASSERT_EQ(app.act("turn-on"), "");
    ASSERT_EQ(loginManager.wakeloftInhibitors().at(0).what, "idle");
    expectSleep("awake session on", promptMs, [] { Laptop::setLid(true); });
    EXPECT_EQ(loginManager.count(), 1);
}

} // namespace
} // namespace wakeloft
