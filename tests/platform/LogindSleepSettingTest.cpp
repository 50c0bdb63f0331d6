#include "LogindSleepSetting.h"
#include "SdEventMainRunLoop.h"
#include "support/ChildProcess.h"
#include "support/PrivateBus.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <cstdlib>
#include <memory>
#include <string>
#include <thread>
#include <unistd.h>
#include <vector>

namespace wakeloft {
namespace {

constexpr const char* service = "org.freedesktop.login1";
constexpr const char* path = "/org/freedesktop/login1";
constexpr const char* interface = "org.freedesktop.login1.Manager";

/// A lock that another process holds.
struct OtherHolder {
    OtherHolder(const PrivateBus& bus, const std::string& what, const std::string& who,
                const std::string& mode = "block")
        : process({"systemd-inhibit", "--what=" + what, "--who=" + who, "--mode=" + mode, "sleep", "60"},
                  {"DBUS_SYSTEM_BUS_ADDRESS=" + bus.address()}) {}
    ChildProcess process;
};

/// A service that answers one method with a text, or never; on a thread of its own.
class OneAnswer {
  public:
    OneAnswer(const PrivateBus& bus, const char* name, const char* objectPath, const char* objectInterface,
              const sd_bus_vtable* vtable)
        : thread_([=, this, &bus] { run(bus, name, objectPath, objectInterface, vtable); }) {
        isReady_.wait(false);
    }
    ~OneAnswer() {
        isOver_ = true;
        thread_.join();
    }
    OneAnswer(const OneAnswer&) = delete;
    OneAnswer& operator=(const OneAnswer&) = delete;

  private:
    void run(const PrivateBus& bus, const char* name, const char* objectPath, const char* objectInterface,
             const sd_bus_vtable* vtable) {
        sd_event* event = nullptr;
        sd_event_new(&event);
        {
            const auto connection = bus.connect(event);
            EXPECT_GE(sd_bus_add_object_vtable(connection.get(), nullptr, objectPath, objectInterface, vtable,
                                               nullptr),
                      0);
            EXPECT_GE(sd_bus_request_name(connection.get(), name, 0), 0);
            isReady_ = true;
            isReady_.notify_all();
            while (!isOver_)
                sd_event_run(event, 5'000);
        }
        sd_event_unref(event);
    }
    std::atomic<bool> isReady_ = false;
    std::atomic<bool> isOver_ = false;
    std::thread thread_;
};

struct SleepSetting : testing::Test {
    PrivateBus bus;
    std::unique_ptr<SdEventMainRunLoop> loop = std::move(SdEventMainRunLoop::create().value());
    BusPointer observer = bus.connect(loop->event());
    BusConnection system{loop->event(), *loop};
    std::unique_ptr<ChildProcess> loginManager;
    LogindSleepSetting setting{system, "Wakeloft", "a test"};

    SleepSetting() { setenv("DBUS_SYSTEM_BUS_ADDRESS", bus.address().c_str(), 1); }

    void startLoginManager() {
        loginManager = std::make_unique<ChildProcess>(std::vector<std::string>{WAKELOFT_RIG_LOGIN_MANAGER});
        ASSERT_TRUE(waitFor([&] { return locks() != "none there"; }));
    }
    bool waitFor(const std::function<bool()>& condition) {
        for (int look = 0; look < 500; ++look)
            if (runUntil(loop->event(), condition, 10))
                return true;
        return false;
    }
    /// All locks as "what|who|mode;".
    std::string locks() {
        sd_bus_message* reply = nullptr;
        if (sd_bus_call_method(observer.get(), service, path, interface, "ListInhibitors", nullptr, &reply,
                               nullptr) < 0)
            return "none there";
        const BusMessage owned(reply);
        std::string text;
        const char* what = nullptr;
        const char* who = nullptr;
        const char* mode = nullptr;
        sd_bus_message_enter_container(reply, 'a', "(ssssuu)");
        while (sd_bus_message_read(reply, "(ssssuu)", &what, &who, nullptr, &mode, nullptr, nullptr) > 0)
            text += std::string(what) + "|" + who + "|" + mode + ";";
        return text;
    }
};

TEST_F(SleepSetting, OnIsOneLockThatIsListedAndOffIsSeenToBeGone) {
    startLoginManager();
    EXPECT_EQ(setting.readDisabled(), false);
    int released = 0;
    setting.observeRelease([&] { ++released; });
    for (int round = 0; round < 20; ++round) {
        ASSERT_TRUE(setting.writeDisabled(true));
        EXPECT_EQ(locks(), "sleep:handle-lid-switch|Wakeloft|block;");
        EXPECT_EQ(setting.readDisabled(), true);
        ASSERT_TRUE(setting.writeDisabled(false));
        EXPECT_EQ(locks(), ""); // at once: the write waited for it
    }
    EXPECT_EQ(released, 20);
    EXPECT_TRUE(setting.writeDisabled(false));
    EXPECT_EQ(released, 20);
}

TEST_F(SleepSetting, OnlyOneForeignLockOnBothCountsAsOnElsewhere) {
    startLoginManager();
    for (const auto& [what, mode, counts] :
         {std::tuple("sleep:handle-lid-switch", "block", true),
          std::tuple("handle-power-key:handle-lid-switch:idle:sleep", "block", true),
          std::tuple("handle-power-key:handle-suspend-key:handle-hibernate-key:handle-lid-switch", "block",
                     false),
          std::tuple("sleep", "block", false), std::tuple("sleep", "delay", false)}) {
        SCOPED_TRACE(what);
        const OtherHolder holder(bus, what, "Other\tone", mode);
        ASSERT_TRUE(waitFor([&] { return locks().find(mode) != std::string::npos; }));
        EXPECT_EQ(setting.readDisabled(), counts);
        const auto written = setting.writeDisabled(true);
        EXPECT_EQ(written.has_value(), !counts);
        const std::string refusal =
            "The computer is already kept awake with the lid closed by Other?one (user " +
            std::to_string(geteuid()) + ", process " + std::to_string(holder.process.pid()) + ").";
        EXPECT_EQ(written ? refusal : written.error().description, refusal);
        ASSERT_TRUE(setting.writeDisabled(false));
    }
    // Two separate ones, of one desktop each, do not add up.
    const OtherHolder lid(bus, "handle-lid-switch", "Desktop");
    const OtherHolder sleeping(bus, "sleep", "Session");
    ASSERT_TRUE(waitFor([&] { return locks().size() > 50; }));
    EXPECT_EQ(setting.readDisabled(), false);
}

TEST_F(SleepSetting, ALostLockReadsAsOffAndIsGivenUp) {
    startLoginManager();
    int told = 0;
    ASSERT_TRUE(setting.watch([&] { ++told; }));
    runUntil(loop->event(), [] { return false; }, 50); // the watch is in place
    const OtherHolder unrelated(bus, "shutdown", "Other");
    ASSERT_TRUE(waitFor([&] { return locks().find("shutdown") != std::string::npos; }));
    EXPECT_EQ(told, 0); // not while it is off
    ASSERT_TRUE(setting.writeDisabled(true));
    loginManager->signal(SIGKILL);
    ASSERT_TRUE(waitFor([&] { return told > 0 && locks() == "none there"; }));
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
    const OtherHolder unrelated(bus, "shutdown", "Other");
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
    EXPECT_TRUE(waitFor([&] { return locks().empty(); }));
    EXPECT_EQ(released, 1);
    // Also where somebody else has put it on in the meantime.
    const OtherHolder holder(bus, "sleep:handle-lid-switch", "Other");
    ASSERT_TRUE(waitFor([&] { return !locks().empty(); }));
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
    static std::string state;
    static const sd_bus_vtable vtable[] = {
        SD_BUS_VTABLE_START(0),
        SD_BUS_METHOD(
            "GetUnitFileState", "s", "s",
            [](sd_bus_message* call, void*, sd_bus_error*) {
                return sd_bus_reply_method_return(call, "s", state.c_str());
            },
            SD_BUS_VTABLE_UNPRIVILEGED),
        SD_BUS_VTABLE_END,
    };
    const OneAnswer manager(bus, "org.freedesktop.systemd1", "/org/freedesktop/systemd1",
                            "org.freedesktop.systemd1.Manager", vtable);
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
    static const sd_bus_vtable vtable[] = {
        SD_BUS_VTABLE_START(0),
        SD_BUS_METHOD(
            "ListInhibitors", "", "a(ssssuu)", [](sd_bus_message*, void*, sd_bus_error*) { return 1; },
            SD_BUS_VTABLE_UNPRIVILEGED),
        SD_BUS_VTABLE_END,
    };
    const OneAnswer silent(bus, service, path, interface, vtable);
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
