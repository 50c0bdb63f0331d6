#include "LidHelperProcess.h"
#include "lease/LidLeaseService.h"

#include <csignal>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <tuple>

namespace wakeloft {
namespace {

struct LidHelperBehaviour : LidHelperRunning {
    const BusPointer client = bus.connect(event);
    const BusPointer other = bus.connect(event);
    int suspends = 0;
    BusSlot sleepWatch = matchBusSignal(observer.get(), "type='signal',member='PrepareForSleep'",
                                        [this](sd_bus_message* message) {
                                            int isGoingToSleep = 0;
                                            sd_bus_message_read(message, "b", &isGoingToSleep);
                                            suspends += isGoingToSleep;
                                        })
                             .value();

    void setLid(bool isClosed, bool isDocked = false) {
        EXPECT_GE(sd_bus_call_method(observer.get(), "org.freedesktop.login1", "/org/freedesktop/login1",
                                     "com.wakeloft.Rig.Lid", "Set", nullptr, nullptr, "bb", isClosed ? 1 : 0,
                                     isDocked ? 1 : 0),
                  0);
    }
    /// Timers of the process that will fire, but for the one that waits for the clock to be set.
    int armedTimers() {
        int count = 0;
        const std::filesystem::path process = "/proc/" + std::to_string(helper->pid());
        for (const auto& entry : std::filesystem::directory_iterator(process / "fdinfo")) {
            std::ifstream info(entry.path());
            std::string line;
            std::string clock;
            std::string value;
            while (std::getline(info, line)) {
                if (line.starts_with("clockid: "))
                    clock = line.substr(9);
                if (line.starts_with("it_value: "))
                    value = line.substr(10);
            }
            count += !clock.empty() && clock != std::to_string(CLOCK_REALTIME) && value != "(0, 0)";
        }
        return count;
    }
    /// How often the process has gone to wait, which it does once more after each time it was woken.
    long waits() { return figure("voluntary_ctxt_switches", "status"); }
};

TEST_F(LidHelperBehaviour, ALeaseHoldsTheLockUntilItsEndItsClientsOrTheHelpers) {
    EXPECT_EQ(renew(client, 1.5), "");
    EXPECT_EQ(locks(), 1);
    pass(700);
    EXPECT_EQ(locks(), 1);
    EXPECT_TRUE(waitFor([&] { return locks() == 0; })); // it has run out
    auto leaving = bus.connect(event);
    ASSERT_EQ(renew(leaving), "");
    ASSERT_EQ(renew(other), "");
    leaving.reset();
    pass(100);
    EXPECT_EQ(locks(), 1); // the other one's
    EXPECT_EQ(renew(other, -1), "");
    EXPECT_EQ(locks(), 0);
    leaving = bus.connect(event);
    ASSERT_EQ(renew(leaving), "");
    leaving.reset();
    EXPECT_TRUE(waitFor([&] { return locks() == 0; }));

    for (const auto& [number, code] : {std::pair(SIGKILL, 128 + SIGKILL), std::pair(SIGTERM, 0)}) {
        SCOPED_TRACE(number);
        ASSERT_EQ(renew(other), "");
        ASSERT_EQ(locks(), 1);
        EXPECT_EQ(end(number), code);
        EXPECT_TRUE(waitFor([&] { return locks() == 0; }));
        start();
    }
}

TEST_F(LidHelperBehaviour, AtRestNoTimerIsArmedAndNothingWakesIt) {
    const FakeUPower upower(bus, event);
    ASSERT_EQ(renew(client), "");
    pass(200);
    EXPECT_GE(armedTimers(), 1);
    ASSERT_EQ(revoke(client), "");
    pass(300);
    EXPECT_EQ(armedTimers(), 0);
    const long before = waits();
    pass(2000);
    EXPECT_EQ(waits(), before);
    EXPECT_EQ(renew(client), "");
    pass(100);
    EXPECT_GT(waits(), before); // the count does move
}

TEST_F(LidHelperBehaviour, AForeignLockRefusesTheLeaseAndALostOneIsToldToEveryHolder) {
    const auto foreign = otherLock("sleep:handle-lid-switch", "Other");
    EXPECT_EQ(renew(client), LidLeaseService::alreadyOnReason());
    EXPECT_EQ(locks(), 0);
    foreign->signal(SIGTERM);
    EXPECT_TRUE(waitFor([&] { return locks("Other") == 0; }));
    for (const auto* each : {&client, &other})
        ASSERT_EQ(renew(*each), "");

    loginManager->signal(SIGKILL); // and its state with it
    loginManager.reset();
    ASSERT_TRUE(waitFor([&] { return !isOwned("org.freedesktop.login1"); }));
    startLoginManager();
    pass(300);
    EXPECT_EQ(armedTimers(), 0); // it has noticed by itself
    for (const auto* each : {&client, &other}) {
        EXPECT_EQ(renew(*each), LidLeaseService::yieldedReason());
        EXPECT_EQ(renew(*each), "");
    }
    EXPECT_EQ(locks(), 1);
}

TEST_F(LidHelperBehaviour, PolkitDecidesOnceAboutEachClient) {
    const char* name = nullptr;
    ASSERT_GE(sd_bus_get_unique_name(client.get(), &name), 0);
    polkit->opinion = FakePolkit::Opinion::no;
    EXPECT_EQ(renew(client), accessDenied);
    EXPECT_EQ(locks(), 0);
    polkit->opinion = FakePolkit::Opinion::yes;
    EXPECT_EQ(renew(client), accessDenied); // for a moment nobody is asked again
    pass(1000);
    EXPECT_EQ(renew(client), "");
    EXPECT_EQ(renew(client), "");
    EXPECT_EQ(polkit->asked, std::vector<std::string>(2, std::string("system-bus-name ") + name +
                                                             " com.wakeloft.app.lidhelper.lease 0"));

    polkit->opinion = FakePolkit::Opinion::never; // the others go on meanwhile
    int answers = 0;
    std::vector<BusSlot> slots;
    constexpr int requests = 9; // one more than may wait
    slots.reserve(requests);
    for (int request = 0; request < requests; ++request)
        slots.push_back(callBusLater(other.get(), renewal(other.get(), wallClock() + 20).get(),
                                     [&](sd_bus_message* reply) {
                                         EXPECT_STREQ(sd_bus_message_get_error(reply)->name, limitsExceeded);
                                         ++answers;
                                     })
                            .value());
    EXPECT_TRUE(waitFor([&] { return answers == 1; })); // the ninth
    slots.clear();
    EXPECT_EQ(renew(client), "");

    polkit.reset();
    const auto late = bus.connect(event);
    EXPECT_EQ(renew(late), accessDenied);
    EXPECT_EQ(renew(client), "");
}

TEST_F(LidHelperBehaviour, AUserHasSixteenClientsThatDoNotAskAllTheTime) {
    std::vector<BusPointer> clients;
    for (int number = 0; number < 16; ++number) {
        clients.push_back(bus.connect(event));
        ASSERT_EQ(renew(clients.back()), "") << number;
    }
    EXPECT_EQ(renew(other), limitsExceeded);
    EXPECT_EQ(renew(clients[3]), "");
    clients.pop_back();
    EXPECT_TRUE(waitFor([&] { return renew(other).empty(); }));

    std::string answer;
    int asked = 0;
    while ((answer = renew(other)).empty())
        ++asked;
    EXPECT_EQ(answer, limitsExceeded);
    EXPECT_GE(asked, 28);
    clients.clear();
    EXPECT_EQ(revoke(other), ""); // which is never too often
    EXPECT_TRUE(waitFor([&] { return locks() == 0; }));
    EXPECT_TRUE(waitFor([&] { return renew(other).empty(); }));
}

TEST_F(LidHelperBehaviour, ReleasedWithTheLidShutTheComputerSleepsWhereTheDesktopMindsTheLid) {
    setLid(true);
    // The login manager sees to it where nobody else does.
    EXPECT_TRUE(waitFor([&] { return suspends == 1; }));
    setLid(false);
    pass(500);

    const auto desktop = otherLock("handle-lid-switch", "Desktop");
    auto leaving = bus.connect(event);
    const auto releases = [&](bool wantsSuspend, bool isClosed, bool isDocked, const auto& release) {
        setLid(false);
        pass(400); // awake again
        suspends = 0;
        EXPECT_EQ(renew(leaving, 25, wantsSuspend), "");
        setLid(isClosed, isDocked);
        pass(200);
        EXPECT_EQ(suspends, 0); // while the lease is held
        release();
        EXPECT_TRUE(waitFor([&] { return locks() == 0; }));
        pass(400);
        return suspends;
    };
    const auto lookAfter = [&] {
        EXPECT_EQ(ChildProcess({WAKELOFT_LID_HELPER, "--after-stop"}).wait(5000), 0);
    };
    const auto byRevoking = [&] { EXPECT_EQ(revoke(leaving), ""); };
    EXPECT_EQ(releases(true, true, false, byRevoking), 1);
    EXPECT_EQ(releases(false, true, false, byRevoking), 0);
    EXPECT_EQ(releases(true, false, false, byRevoking), 0);
    EXPECT_EQ(releases(true, true, true, byRevoking), 0);
    EXPECT_EQ(releases(true, true, false,
                       [&] {
                           leaving.reset();
                           leaving = bus.connect(event);
                       }),
              1);
    EXPECT_EQ(releases(true, true, false, [&] { EXPECT_EQ(renew(leaving, 0.5, true), ""); }), 1);
    EXPECT_EQ(releases(true, true, false, [&] { EXPECT_EQ(end(SIGTERM), 0); }), 1);
    suspends = 0;
    lookAfter();
    pass(400);
    EXPECT_EQ(suspends, 0); // it ended in good order
    start();
    EXPECT_EQ(releases(true, true, false,
                       [&] {
                           end(SIGKILL);
                           lookAfter();
                           lookAfter(); // once
                       }),
              1);
}

TEST_F(LidHelperBehaviour, OnAnAlmostEmptyBatteryItLetsGoByItself) {
    FakeUPower upower(bus, event);
    upower.setLevel(3);
    ASSERT_EQ(renew(client), "");
    ASSERT_TRUE(waitFor([&] { return upower.reads() > 0; }));
    pass(200);
    EXPECT_EQ(locks(), 1); // low alone is no reason
    upower.setLevel(4);
    EXPECT_TRUE(waitFor([&] { return locks() == 0; }));
    pass(100);
    constexpr auto heldBack = "The battery is almost empty, so this computer may sleep.";
    EXPECT_EQ(renew(other), heldBack);
    EXPECT_EQ(renew(client), LidLeaseService::yieldedReason());
    EXPECT_EQ(renew(client), heldBack);
    EXPECT_EQ(locks(), 0);
    upower.setLevel(1);
    EXPECT_TRUE(waitFor([&] { return renew(client).empty(); }));
    EXPECT_EQ(locks(), 1);
}

TEST_F(LidHelperBehaviour, WithoutTheSystemBusItEndsWithAFailure) {
    auto lost = std::make_unique<PrivateBus>();
    ChildProcess orphan({WAKELOFT_LID_HELPER}, {"DBUS_SYSTEM_BUS_ADDRESS=" + lost->address()});
    const auto watcher = lost->connect(event);
    ASSERT_TRUE(waitFor([&] { return sd_bus_get_name_creds(watcher.get(), helperName, 0, nullptr) >= 0; }));
    EXPECT_EQ(orphan.wait(200), -1);
    lost.reset();
    EXPECT_EQ(orphan.wait(5000), 1);
    ChildProcess nowhere({WAKELOFT_LID_HELPER}, {"DBUS_SYSTEM_BUS_ADDRESS=unix:path=/nonexistent/bus"});
    EXPECT_EQ(nowhere.wait(5000), 1);
    ChildProcess second({WAKELOFT_LID_HELPER}); // the name is taken
    EXPECT_EQ(second.wait(5000), 1);
}

} // namespace
} // namespace wakeloft
