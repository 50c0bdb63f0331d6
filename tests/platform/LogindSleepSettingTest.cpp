#include "LogindSleepSetting.h"
#include "PrivateSystem.h"
#include "support/FakeService.h"
#include "support/ListedInhibitors.h"

#include <gtest/gtest.h>

#include <chrono>
#include <csignal>
#include <string>
#include <tuple>
#include <unistd.h>

namespace wakeloft {
namespace {

struct SleepSetting : testing::Test, PrivateSystem {
    BusConnection system{event, *loop};
    LogindSleepSetting setting{system, "Wakeloft", "a test"};

    int listed() { return listedInhibitors(observer.get(), "sleep:handle-lid-switch", "Wakeloft"); }
};

TEST_F(SleepSetting, OnIsOneLockThatIsListedAndOffIsSeenToBeGone) {
    startLoginManager();
    EXPECT_EQ(setting.readDisabled(), false);
    int released = 0;
    setting.observeRelease([&] { ++released; });
    for (int round = 0; round < 20; ++round) {
        ASSERT_TRUE(setting.writeDisabled(true));
        EXPECT_EQ(listed(), 1);
        EXPECT_EQ(setting.readDisabled(), true);
        ASSERT_TRUE(setting.writeDisabled(false));
        EXPECT_EQ(listed(), 0); // at once: the write waited for it
    }
    EXPECT_EQ(released, 20);
    EXPECT_TRUE(setting.writeDisabled(false));
    EXPECT_EQ(released, 20);
}

TEST_F(SleepSetting, OnlyOneForeignLockOnBothCountsAsOnElsewhere) {
    startLoginManager();
    for (const auto& [what, mode, counts] :
         {std::tuple("sleep:handle-lid-switch", "block", true),
          std::tuple("sleep:idle:handle-power-key:handle-lid-switch", "block", true),
          std::tuple("handle-power-key:handle-suspend-key:handle-hibernate-key:handle-lid-switch", "block",
                     false),
          std::tuple("sleep", "delay", false)}) {
        SCOPED_TRACE(what);
        const auto holder = otherLock(what, "Other\tone", mode);
        EXPECT_EQ(setting.readDisabled(), counts);
        const auto written = setting.writeDisabled(true);
        EXPECT_EQ(written.has_value(), !counts);
        const std::string refusal =
            "The computer is already kept awake with the lid closed by Other?one (user " +
            std::to_string(geteuid()) + ", process " + std::to_string(holder->pid()) + ").";
        EXPECT_EQ(written ? refusal : written.error().description, refusal);
        ASSERT_TRUE(setting.writeDisabled(false));
    }
    // Two separate ones, of one desktop each, do not add up.
    const auto lid = otherLock("handle-lid-switch", "Desktop");
    const auto sleeping = otherLock("sleep", "Session");
    EXPECT_EQ(setting.readDisabled(), false);
}

TEST_F(SleepSetting, ALostLockReadsAsOffAndIsGivenUp) {
    startLoginManager();
    int told = 0;
    ASSERT_TRUE(setting.watch([&] { ++told; }));
    pass(50); // the watch is in place
    const auto unrelated = otherLock("shutdown", "Other");
    EXPECT_EQ(told, 0); // not while it is off
    ASSERT_TRUE(setting.writeDisabled(true));
    loginManager->signal(SIGKILL);
    ASSERT_TRUE(waitFor([&] { return told > 0 && listed() < 0; }));
    EXPECT_FALSE(setting.readDisabled()); // nobody to ask
    EXPECT_TRUE(setting.isHeld());
    startLoginManager(); // has forgotten it
    EXPECT_EQ(setting.readDisabled(), false);
    EXPECT_FALSE(setting.isHeld());
    ASSERT_TRUE(setting.writeDisabled(true));
    EXPECT_TRUE(setting.isHeld());
}

TEST_F(SleepSetting, AHeldLockIsLookedUpAgainOnlyAfterAChangeWasTold) {
    startLoginManager();
    int told = 0;
    ASSERT_TRUE(setting.watch([&] { ++told; }));
    ASSERT_TRUE(setting.writeDisabled(true));
    ASSERT_TRUE(waitFor([&] { return told > 0; })); // of its own lock
    const auto readsOfSilence = [&] {
        loginManager->signal(SIGSTOP);
        const auto read = setting.readDisabled();
        loginManager->signal(SIGCONT);
        return read;
    };
    EXPECT_FALSE(readsOfSilence()); // asked, and not answered
    EXPECT_EQ(setting.readDisabled(), true);
    EXPECT_EQ(readsOfSilence(), true);
    told = 0;
    const auto unrelated = otherLock("shutdown", "Other");
    ASSERT_TRUE(waitFor([&] { return told > 0; }));
    EXPECT_FALSE(readsOfSilence());
    EXPECT_EQ(setting.readDisabled(), true);
    loginManager->signal(SIGKILL);
    loginManager->wait(5000);
    EXPECT_FALSE(setting.readDisabled()); // noticed before the bus has told anything
}

TEST_F(SleepSetting, ForbiddenItLetsGoAndReadsAsTurnedOff) {
    startLoginManager();
    int released = 0;
    setting.observeRelease([&] { ++released; });
    ASSERT_TRUE(setting.writeDisabled(true));
    setting.forbid("Not on this battery.");
    EXPECT_TRUE(waitFor([&] { return listed() == 0; }));
    EXPECT_EQ(released, 1);
    // Also where somebody else has put it on in the meantime.
    const auto holder = otherLock("sleep:handle-lid-switch", "Other");
    EXPECT_EQ(setting.readDisabled(), false);
    EXPECT_EQ(setting.readDisabled(), true);
    EXPECT_EQ(setting.writeDisabled(true).error().description, "Not on this battery.");
    setting.permit();
    EXPECT_NE(setting.writeDisabled(true).error().description, "Not on this battery.");
}

TEST_F(SleepSetting, WithoutALoginManagerEverythingButAReleaseFailsInWords) {
    constexpr auto text = "The login manager cannot be asked who keeps the computer awake: ";
    for (const auto& failure : {setting.writeDisabled(true).error(), setting.readDisabled().error()})
        EXPECT_TRUE(failure.description.starts_with(text)) << failure.description;
    EXPECT_TRUE(setting.writeDisabled(false)); // nothing was held
    startLoginManager();
    ASSERT_TRUE(setting.writeDisabled(true));
    loginManager.reset();
    EXPECT_TRUE(setting.writeDisabled(false)); // nobody honours it
}

TEST_F(SleepSetting, AMaskedSuspendIsOnElsewhere) {
    startLoginManager();
    std::string state;
    const ServiceThread manager([&](sd_event* thread) {
        return std::make_shared<FakeService>(bus, thread, "org.freedesktop.systemd1",
                                             "/org/freedesktop/systemd1",
                                             [&](sd_bus_message* call, sd_bus_error*) {
                                                 return sd_bus_reply_method_return(call, "s", state.c_str());
                                             });
    });
    for (const char* masked : {"masked", "masked-runtime"}) {
        state = masked;
        EXPECT_EQ(setting.readDisabled(), true);
        EXPECT_EQ(setting.writeDisabled(true).error().description,
                  "Sleep is masked on this computer (suspend.target).");
    }
    state = "static";
    EXPECT_EQ(setting.readDisabled(), false);
    EXPECT_TRUE(setting.writeDisabled(true));
}

TEST_F(SleepSetting, ASilentLoginManagerIsGivenUpInTime) {
    const ServiceThread silent([&](sd_event* thread) {
        return std::make_shared<FakeService>(bus, thread, "org.freedesktop.login1", "/org/freedesktop/login1",
                                             [](sd_bus_message*, sd_bus_error*) { return 1; });
    });
    using Clock = std::chrono::steady_clock;
    const auto taken = [](const auto& operation) {
        const auto start = Clock::now();
        EXPECT_FALSE(operation());
        return std::chrono::duration<double>(Clock::now() - start).count();
    };
    const double read = taken([&] { return setting.readDisabled().has_value(); });
    const double written = taken([&] { return setting.writeDisabled(true).has_value(); });
    constexpr double slack = 0.3; // of a busy machine
    EXPECT_GE(read, 0.24);
    EXPECT_LE(read, 0.25 + slack);
    EXPECT_GE(written, 0.99);
    EXPECT_LE(written, 1 + slack);
}

} // namespace
} // namespace wakeloft
