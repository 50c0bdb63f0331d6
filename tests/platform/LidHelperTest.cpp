#include "LidHelperFakes.h"
#include "SdEventMainRunLoop.h"
#include "lease/LidLeaseService.h"
#include "lease/RigLeaseFile.h"
#include "support/ChildProcess.h"
#include "support/ListedInhibitors.h"

#include <chrono>
#include <cmath>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <limits>
#include <memory>
#include <tuple>
#include <unistd.h>

namespace wakeloft {
namespace {

constexpr const char* helperName = "com.wakeloft.app.lidhelper";
constexpr const char* accessDenied = "org.freedesktop.DBus.Error.AccessDenied";
constexpr const char* limitsExceeded = "org.freedesktop.DBus.Error.LimitsExceeded";
constexpr const char* invalidArguments = "org.freedesktop.DBus.Error.InvalidArgs";

/// The real helper on a private bus, beside the embedded login manager and invented services.
struct LidHelperProcess : testing::Test {
    PrivateBus bus;
    std::unique_ptr<SdEventMainRunLoop> loop = std::move(SdEventMainRunLoop::create().value());
    sd_event* event = loop->event();
    BusPointer observer = bus.connect(event);
    std::unique_ptr<FakePolkit> polkit = std::make_unique<FakePolkit>(bus, event);
    std::unique_ptr<ChildProcess> loginManager;
    std::unique_ptr<ChildProcess> helper;
    int suspends = 0;
    BusSlot sleepWatch = matchBusSignal(observer.get(), "type='signal',member='PrepareForSleep'",
                                        [this](sd_bus_message* message) {
                                            int isGoingToSleep = 0;
                                            sd_bus_message_read(message, "b", &isGoingToSleep);
                                            suspends += isGoingToSleep;
                                        })
                             .value();

    LidHelperProcess() {
        setenv("DBUS_SYSTEM_BUS_ADDRESS", bus.address().c_str(), 1);
        setenv("RUNTIME_DIRECTORY", bus.directory().c_str(), 1); // as the service manager does
        startLoginManager();
        start(WAKELOFT_LID_HELPER);
    }
    void startLoginManager() {
        loginManager = std::make_unique<ChildProcess>(std::vector<std::string>{WAKELOFT_RIG_LOGIN_MANAGER});
        ASSERT_TRUE(waitFor([&] { return isOwned("org.freedesktop.login1"); }));
    }
    void start(const std::string& program, const std::vector<std::string>& arguments = {}) {
        std::vector<std::string> command{program};
        command.insert(command.end(), arguments.begin(), arguments.end());
        helper = std::make_unique<ChildProcess>(command);
        ASSERT_TRUE(waitFor([&] { return isOwned(helperName); }));
    }
    bool waitFor(const std::function<bool()>& condition) {
        for (int look = 0; look < 500; ++look)
            if (runUntil(event, condition, 10))
                return true;
        return false;
    }
    void pass(int milliseconds) {
        runUntil(event, [] { return false; }, milliseconds);
    }
    bool isOwned(const char* name) { return sd_bus_get_name_creds(observer.get(), name, 0, nullptr) >= 0; }
    /// How many locks of the helper's kind `who` holds.
    int locks(const std::string& who = "Wakeloft") {
        return listedInhibitors(observer.get(), "sleep:handle-lid-switch", who);
    }
    BusMessage call(sd_bus* client, const char* method) {
        sd_bus_message* message = nullptr;
        EXPECT_GE(sd_bus_message_new_method_call(client, &message, helperName, "/com/wakeloft/app/lidhelper",
                                                 "com.wakeloft.app.LidLease", method),
                  0);
        return BusMessage(message);
    }
    /// The reason in the answer (empty: granted), or the name of the error.
    std::string answer(sd_bus* client, sd_bus_message* message) {
        std::optional<std::string> text;
        const auto slot = callBusLater(client, message, [&](sd_bus_message* reply) {
            const char* reason = "";
            if (const auto* error = sd_bus_message_get_error(reply))
                text = error->name;
            else
                text = sd_bus_message_read(reply, "s", &reason) >= 0 ? reason : "";
        });
        EXPECT_TRUE(runUntil(event, [&] { return text.has_value(); }, 6000));
        return text.value_or("no answer");
    }
    static double wallClock() {
        return std::chrono::duration<double>(std::chrono::system_clock::now().time_since_epoch()).count();
    }
    BusMessage renewal(sd_bus* client, double deadline, bool suspendIfClosed = false) {
        auto message = call(client, "RenewLease");
        sd_bus_message_append(message.get(), "da{sv}", deadline, 1, "suspend_if_closed", "b",
                              suspendIfClosed ? 1 : 0);
        return message;
    }
    std::string renew(const BusPointer& client, double seconds = 25, bool suspendIfClosed = false) {
        return answer(client.get(), renewal(client.get(), wallClock() + seconds, suspendIfClosed).get());
    }
    std::string revoke(const BusPointer& client) {
        return answer(client.get(), call(client.get(), "RevokeLease").get());
    }
    void setLid(bool isClosed, bool isDocked = false) {
        EXPECT_GE(sd_bus_call_method(observer.get(), "org.freedesktop.login1", "/org/freedesktop/login1",
                                     "com.wakeloft.Rig.Lid", "Set", nullptr, nullptr, "bb", isClosed ? 1 : 0,
                                     isDocked ? 1 : 0),
                  0);
    }
    std::unique_ptr<ChildProcess> otherLock(const char* what, const char* who) {
        return std::make_unique<ChildProcess>(std::vector<std::string>{
            "systemd-inhibit", std::string("--what=") + what, std::string("--who=") + who, "sleep", "60"});
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
    long waits() {
        std::ifstream status("/proc/" + std::to_string(helper->pid()) + "/status");
        std::string line;
        while (std::getline(status, line))
            if (line.starts_with("voluntary_ctxt_switches:"))
                return std::atol(line.c_str() + line.find(':') + 1);
        return -1;
    }
};

TEST_F(LidHelperProcess, ALeaseHoldsTheLockUntilItsEndAndNoLonger) {
    const auto client = bus.connect(event);
    const auto other = bus.connect(event);
    EXPECT_EQ(locks(), 0);
    EXPECT_EQ(renew(client, 1.5), "");
    EXPECT_EQ(locks(), 1);
    pass(700);
    EXPECT_EQ(locks(), 1);
    EXPECT_TRUE(waitFor([&] { return locks() == 0; })); // it has run out

    EXPECT_EQ(renew(client), "");
    EXPECT_EQ(renew(other), "");
    EXPECT_EQ(revoke(client), "");
    EXPECT_EQ(locks(), 1); // the other one's
    EXPECT_EQ(renew(other, -1), "");
    EXPECT_EQ(locks(), 0);
    EXPECT_EQ(revoke(client), "");
}

TEST_F(LidHelperProcess, TheLockGoesWithItsClientOrWithTheHelper) {
    auto client = bus.connect(event);
    const auto other = bus.connect(event);
    ASSERT_EQ(renew(client), "");
    ASSERT_EQ(renew(other, 3), "");
    client.reset();
    pass(100);
    EXPECT_EQ(locks(), 1);
    EXPECT_TRUE(waitFor([&] { return locks() == 0; })); // at the other one's end, long before the lost one's
    client = bus.connect(event);
    ASSERT_EQ(renew(client), "");
    ASSERT_EQ(locks(), 1);
    client.reset();
    EXPECT_TRUE(waitFor([&] { return locks() == 0; }));

    for (const auto& [number, code] : {std::pair(SIGKILL, 128 + SIGKILL), std::pair(SIGTERM, 0)}) {
        SCOPED_TRACE(number);
        ASSERT_EQ(renew(other), "");
        ASSERT_EQ(locks(), 1);
        helper->signal(number);
        EXPECT_EQ(helper->wait(5000), code);
        EXPECT_TRUE(waitFor([&] { return locks() == 0; }));
        start(WAKELOFT_LID_HELPER);
    }
}

TEST_F(LidHelperProcess, AtRestNoTimerIsArmedAndNothingWakesIt) {
    const FakeUPower upower(bus, event);
    const auto client = bus.connect(event);
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

TEST_F(LidHelperProcess, OneForeignLockOnBothRefusesTheLease) {
    const auto client = bus.connect(event);
    {
        const auto desktop = otherLock("handle-power-key:handle-lid-switch", "Desktop");
        const auto session = otherLock("sleep", "Session");
        pass(300);
        EXPECT_EQ(renew(client), "");
        EXPECT_EQ(revoke(client), "");
    }
    const auto foreign = otherLock("sleep:handle-lid-switch", "Other");
    ASSERT_TRUE(waitFor([&] { return locks("Other") == 1; }));
    EXPECT_EQ(renew(client),
              "The sleep setting is already on, set by something other than Wakeloft, and was left "
              "as it is.");
    EXPECT_EQ(locks(), 0);
    foreign->signal(SIGTERM);
    EXPECT_TRUE(waitFor([&] { return locks("Other") == 0; }));
    EXPECT_EQ(renew(client), "");
}

TEST_F(LidHelperProcess, ALostLockIsToldToEveryHolderOnce) {
    const auto client = bus.connect(event);
    const auto other = bus.connect(event);
    ASSERT_EQ(renew(client), "");
    ASSERT_EQ(renew(other), "");
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

TEST_F(LidHelperProcess, PolkitDecidesOnceAboutEachClient) {
    const auto client = bus.connect(event);
    const char* name = nullptr;
    ASSERT_GE(sd_bus_get_unique_name(client.get(), &name), 0);
    polkit->opinion = FakePolkit::Opinion::no;
    EXPECT_EQ(renew(client), accessDenied);
    EXPECT_EQ(locks(), 0);
    polkit->opinion = FakePolkit::Opinion::yes;
    EXPECT_EQ(renew(client), "");
    EXPECT_EQ(renew(client), "");
    EXPECT_EQ(polkit->asked, std::vector<std::string>(2, std::string("system-bus-name ") + name +
                                                             " com.wakeloft.app.lidhelper.lease 0"));

    polkit->opinion = FakePolkit::Opinion::never; // the others go on meanwhile
    const auto slow = bus.connect(event);
    int answers = 0;
    std::vector<BusSlot> slots;
    constexpr int requests = 9; // one more than may wait
    slots.reserve(requests);
    for (int request = 0; request < requests; ++request)
        slots.push_back(
            callBusLater(slow.get(), renewal(slow.get(), wallClock() + 20).get(), [&](sd_bus_message* reply) {
                EXPECT_STREQ(sd_bus_message_get_error(reply)->name, limitsExceeded);
                ++answers;
            }).value());
    EXPECT_TRUE(waitFor([&] { return answers == 1; })); // the ninth
    EXPECT_EQ(renew(client), "");
    slots.clear();

    polkit.reset();
    const auto late = bus.connect(event);
    EXPECT_EQ(renew(late), accessDenied);
    EXPECT_EQ(renew(client), "");
}

TEST_F(LidHelperProcess, AUserHasSixteenClients) {
    std::vector<BusPointer> clients;
    for (int number = 0; number < 16; ++number) {
        clients.push_back(bus.connect(event));
        ASSERT_EQ(renew(clients.back()), "") << number;
    }
    const auto tooMany = bus.connect(event);
    EXPECT_EQ(renew(tooMany), limitsExceeded);
    EXPECT_EQ(renew(clients[3]), "");
    clients.pop_back();
    EXPECT_TRUE(waitFor([&] { return renew(tooMany).empty(); }));
}

TEST_F(LidHelperProcess, RubbishIsRefusedAndChangesNothing) {
    const auto client = bus.connect(event);
    for (const double deadline :
         {std::nan(""), std::numeric_limits<double>::infinity(), -std::numeric_limits<double>::infinity()})
        EXPECT_EQ(answer(client.get(), renewal(client.get(), deadline).get()),
                  "The lease deadline is not a number.");
    const auto oversized = [&](std::size_t size) {
        auto message = call(client.get(), "RenewLease");
        const std::string text(size, 'x');
        sd_bus_message_append(message.get(), "da{sv}", wallClock() + 20, 1, "note", "s", text.c_str());
        return answer(client.get(), message.get());
    };
    EXPECT_EQ(oversized(5000), limitsExceeded);
    EXPECT_EQ(oversized(10'000'000), limitsExceeded);
    auto many = call(client.get(), "RenewLease");
    sd_bus_message_append(many.get(), "d", wallClock() + 20);
    sd_bus_message_open_container(many.get(), 'a', "{sv}");
    for (int option = 0; option < 1000; ++option)
        sd_bus_message_append(many.get(), "{sv}", "option", "(ayv)", 2, 1, 2, "t", std::uint64_t{7});
    sd_bus_message_close_container(many.get());
    EXPECT_EQ(answer(client.get(), many.get()), limitsExceeded);
    auto wrongOption = call(client.get(), "RenewLease");
    sd_bus_message_append(wrongOption.get(), "da{sv}", wallClock() + 20, 1, "suspend_if_closed", "s", "yes");
    EXPECT_EQ(answer(client.get(), wrongOption.get()), invalidArguments);
    auto wrongSignature = call(client.get(), "RenewLease");
    sd_bus_message_append(wrongSignature.get(), "s", "tomorrow");
    EXPECT_EQ(answer(client.get(), wrongSignature.get()), invalidArguments);
    auto wrongRevocation = call(client.get(), "RevokeLease");
    sd_bus_message_append(wrongRevocation.get(), "u", 7U);
    EXPECT_EQ(answer(client.get(), wrongRevocation.get()), invalidArguments);
    EXPECT_EQ(answer(client.get(), call(client.get(), "WriteSetting").get()),
              "org.freedesktop.DBus.Error.UnknownMethod");
    EXPECT_EQ(locks(), 0);
    EXPECT_EQ(oversized(1000), ""); // an option that is not known, and not too large
    EXPECT_EQ(locks(), 1);
}

TEST_F(LidHelperProcess, ReleasedWithTheLidShutTheComputerSleepsWhereTheDesktopMindsTheLid) {
    auto client = bus.connect(event);
    setLid(true);
    EXPECT_TRUE(
        waitFor([&] { return suspends == 1; })); // the login manager sees to it where nobody else does
    setLid(false);
    pass(500);

    const auto desktop = otherLock("handle-lid-switch", "Desktop");
    pass(300);
    const auto releases = [&](bool wantsSuspend, bool isClosed, bool isDocked, const auto& release) {
        setLid(false);
        pass(400); // awake again
        suspends = 0;
        EXPECT_EQ(renew(client, 25, wantsSuspend), "");
        setLid(isClosed, isDocked);
        pass(200);
        EXPECT_EQ(suspends, 0); // while the lease is held
        release();
        EXPECT_TRUE(waitFor([&] { return locks() == 0; }));
        pass(400);
        return suspends;
    };
    const auto byRevoking = [&] { EXPECT_EQ(revoke(client), ""); };
    EXPECT_EQ(releases(true, true, false, byRevoking), 1);
    EXPECT_EQ(releases(false, true, false, byRevoking), 0);
    EXPECT_EQ(releases(true, false, false, byRevoking), 0);
    EXPECT_EQ(releases(true, true, true, byRevoking), 0);
    EXPECT_EQ(releases(true, true, false,
                       [&] {
                           client.reset();
                           client = bus.connect(event);
                       }),
              1);
    EXPECT_EQ(releases(true, true, false, [&] { EXPECT_EQ(renew(client, 0.5, true), ""); }), 1);
    EXPECT_EQ(releases(true, true, false,
                       [&] {
                           helper->signal(SIGTERM);
                           EXPECT_EQ(helper->wait(5000), 0);
                       }),
              1);
    const auto lookAfter = [&] {
        EXPECT_EQ(ChildProcess({WAKELOFT_LID_HELPER, "--after-stop"}).wait(5000), 0);
    };
    suspends = 0;
    lookAfter();
    pass(400);
    EXPECT_EQ(suspends, 0); // it ended in good order
    start(WAKELOFT_LID_HELPER);
    EXPECT_EQ(releases(true, true, false,
                       [&] {
                           helper->signal(SIGKILL);
                           helper->wait(5000);
                           lookAfter();
                           lookAfter(); // once
                       }),
              1);
}

TEST_F(LidHelperProcess, OnAnAlmostEmptyBatteryItLetsGoByItself) {
    FakeUPower upower(bus, event);
    const auto client = bus.connect(event);
    const auto other = bus.connect(event);
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

TEST_F(LidHelperProcess, WithoutTheSystemBusItEndsWithAFailure) {
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

TEST_F(LidHelperProcess, TheRigRecordsItsLeaseInAFileThatTheCheckerFollows) {
    helper->signal(SIGTERM);
    ASSERT_EQ(helper->wait(5000), 0);
    const auto file = (bus.directory() / "lease").string();
    const auto said = bus.directory() / "said";
    start(WAKELOFT_RIG_LID_HELPER, {"--lease-file=" + file});
    const ChildProcess checker({"sh", "-c", "exec \"$0\" \"$1\" >\"$2\"", WAKELOFT_RIG_LID_CHECKER,
                                "--lease-file=" + file, said.string()});
    const auto checkerSays = [&](const std::string& text) {
        return waitFor([&] {
            std::ifstream stream(said);
            return std::string(std::istreambuf_iterator<char>(stream), {}) == text;
        });
    };
    EXPECT_TRUE(checkerSays("missing\n"));
    const auto client = bus.connect(event);
    EXPECT_EQ(renew(client, 20), "");
    EXPECT_NEAR(RigLeaseFile::readAt(file).value_or(Date{}).secondsSince1970, wallClock() + 20, 1);
    EXPECT_TRUE(checkerSays("missing\nheld\n"));
    EXPECT_EQ(renew(client, 1), "");
    EXPECT_TRUE(waitFor([&] { return !std::filesystem::exists(file); }));
    EXPECT_EQ(renew(client, 2), "");
    helper->signal(SIGKILL);
    helper->wait(5000);
    EXPECT_TRUE(waitFor([&] {
        std::ifstream stream(said);
        return std::string(std::istreambuf_iterator<char>(stream), {}).ends_with("held\nlapsed\n");
    }));
}

} // namespace
} // namespace wakeloft
