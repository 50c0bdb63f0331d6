#include "LidHelperProcess.h"
#include "lease/LidLeaseService.h"
#include "support/OtherLock.h"

#include <cmath>
#include <functional>
#include <list>
#include <optional>
#include <tuple>

namespace wakeloft {
namespace {

struct LidHelperBehaviour : LidHelperProcess {
    const LeaseHolder client;
    const LeaseHolder other;
};

TEST_F(LidHelperBehaviour, PolkitDecidesOnceAboutEachClient) {
    opinion = Opinion::no;
    EXPECT_EQ(client.renew(), accessDenied);
    opinion = Opinion::yes;
    EXPECT_EQ(client.renew(), accessDenied); // for a moment nobody is asked again
    EXPECT_EQ(locks(), 0);
    pass(1000);
    EXPECT_EQ(client.renew(), "");
    opinion = Opinion::broken;
    EXPECT_EQ(client.renew(), "");
    EXPECT_EQ(asked, 2);
    EXPECT_EQ(other.renew(), accessDenied);

    opinion = Opinion::never; // the others go on meanwhile
    const LeaseHolder waiting;
    for (int request = 0; request < 8; ++request)
        EXPECT_TRUE(waiting.send(waiting.renewal(wallClock() + 20)));
    EXPECT_EQ(waiting.renew(), limitsExceeded); // one more than may wait
    EXPECT_EQ(client.renew(), "");
}

TEST_F(LidHelperBehaviour, AUserHasSixteenClientsThatDoNotAskAllTheTime) {
    int granted = 0;
    while (granted < 100 && client.renew().empty())
        ++granted;
    EXPECT_GE(granted, 32);
    EXPECT_EQ(client.renew(), limitsExceeded);
    EXPECT_EQ(client.revoke(), ""); // which is never too often
    EXPECT_EQ(locks(), 0);
    EXPECT_TRUE(waitFor([this] { return client.renew().empty(); }));

    std::list<LeaseHolder> more(15);
    for (const auto& each : more)
        EXPECT_EQ(each.renew(), "");
    EXPECT_EQ(other.renew(), limitsExceeded);
    more.pop_back();
    EXPECT_TRUE(waitFor([this] { return other.renew().empty(); }));
}

TEST_F(LidHelperBehaviour, RubbishIsRefusedAndChangesNothing) {
    constexpr const char* invalidArguments = "org.freedesktop.DBus.Error.InvalidArgs";
    for (const double deadline : {std::nan(""), HUGE_VAL, -HUGE_VAL})
        EXPECT_EQ(client.answer(client.renewal(deadline)), "The lease deadline is not a number.");
    EXPECT_EQ(client.answer(client.renewal(-1e300)), "");
    const auto noted = [&](const std::string& name, const std::string& text) {
        const auto message = client.call("RenewLease");
        sd_bus_message_append(message.get(), "da{sv}", wallClock() + 20, 1, name.c_str(), "s", text.c_str());
        return client.answer(message);
    };
    const auto called = [&](const char* method, const std::string& text) {
        const auto message = client.call(method);
        sd_bus_message_append(message.get(), "s", text.c_str());
        return client.answer(message);
    };
    const long before = memory();
    const std::string huge(std::size_t{10'000'000}, 'x');
    EXPECT_EQ(noted("note", std::string(5000, 'x')), limitsExceeded);
    EXPECT_EQ(noted("note", huge), limitsExceeded);
    EXPECT_EQ(noted(huge, "x"), limitsExceeded);
    const auto many = client.call("RenewLease");
    sd_bus_message_append(many.get(), "d", wallClock() + 20);
    sd_bus_message_open_container(many.get(), 'a', "{sv}");
    for (int option = 0; option < 1000; ++option)
        sd_bus_message_append(many.get(), "{sv}", "option", "(ayv)", 2, 1, 2, "t", std::uint64_t{7});
    sd_bus_message_close_container(many.get());
    EXPECT_EQ(client.answer(many), limitsExceeded);
    EXPECT_EQ(noted("suspend_if_closed", "yes\nno \x1b[31m"), invalidArguments);
    EXPECT_EQ(called("RenewLease", huge), invalidArguments);
    EXPECT_EQ(called("RevokeLease", "\x1b[31m"), invalidArguments);
    EXPECT_EQ(called("WriteSetting", "on"), "org.freedesktop.DBus.Error.UnknownMethod");
    EXPECT_EQ(locks(), 0);
    EXPECT_LE(isMeasured ? memory() : 0, before + 1024);
    EXPECT_EQ(noted("note", std::string(1000, 'x')), ""); // not known, and not too large
    EXPECT_EQ(locks(), 1);
    // The start line, and nothing of what they said.
    EXPECT_EQ(log().find('\n'), log().size() - 1) << log();
}

TEST_F(LidHelperBehaviour, ReleasedWithTheLidShutTheComputerSleepsWhereTheDesktopMindsTheLid) {
    const auto setLid = [this](bool isClosed, bool isDocked) {
        EXPECT_GE(sd_bus_call_method(observer.get(), "org.freedesktop.login1", "/org/freedesktop/login1",
                                     "com.wakeloft.Rig.Lid", "Set", nullptr, nullptr, "bb", isClosed ? 1 : 0,
                                     isDocked ? 1 : 0),
                  0);
    };
    const OtherLock desktop(observer.get(), "handle-lid-switch", "Desktop");
    std::optional<LeaseHolder> holder(std::in_place);
    const std::function<void()> revoke = [&] { EXPECT_EQ(holder->revoke(), ""); };
    const std::function<void()> leave = [&] { holder.emplace(); };
    const std::function<void()> lapse = [&] { EXPECT_EQ(holder->renew(0.5, true), ""); };
    const std::function<void()> stop = [&] { EXPECT_EQ(end(SIGTERM), 0); };
    for (const auto& [release, wantsSuspend, isClosed, isDocked, isToSleep] :
         {std::tuple(revoke, true, true, false, true), std::tuple(revoke, false, true, false, false),
          std::tuple(revoke, true, false, false, false), std::tuple(revoke, true, true, true, false),
          std::tuple(leave, true, true, false, true), std::tuple(lapse, true, true, false, true),
          std::tuple(stop, true, true, false, true)}) {
        setLid(false, false);
        pass(400); // awake again
        std::string said = log();
        EXPECT_EQ(holder->renew(25, wantsSuspend), "");
        setLid(isClosed, isDocked);
        pass(200);
        EXPECT_EQ(log(), said); // while the lease is held
        release();
        EXPECT_TRUE(waitFor([this] { return locks() == 0; }));
        pass(400);
        said += isToSleep ? "WakeloftLidHelper: the lid is shut: asking for sleep\n" : "";
        EXPECT_EQ(log(), said);
    }
}

TEST_F(LidHelperBehaviour, ALoginManagerThatHangsHoldsNobodyUp) {
    constexpr double slack = 0.3; // of a busy machine
    ASSERT_EQ(client.renew(), "");
    pass(100); // it has heard of its own lock
    ASSERT_EQ(client.renew(), "");
    loginManager->signal(SIGSTOP);
    double start = wallClock();
    EXPECT_EQ(client.renew(), ""); // the held lock itself shows that it is honoured
    EXPECT_LT(wallClock() - start, LidSleepLease::readTimeout);
    start = wallClock();
    EXPECT_EQ(client.revoke(), "");
    EXPECT_LE(wallClock() - start, LidSleepLease::writeTimeout + slack);
    loginManager->signal(SIGCONT);
    EXPECT_TRUE(waitFor([this] { return log().ends_with("The sleep setting is as wanted again.\n"); }));
    loginManager->signal(SIGSTOP);
    start = wallClock();
    EXPECT_TRUE(client.renew().starts_with("The sleep setting could not be read, so it was left as it is: "));
    EXPECT_LE(wallClock() - start, LidSleepLease::readTimeout + slack);
    loginManager->signal(SIGCONT);
    EXPECT_EQ(client.renew(), "");
    loginManager.reset();
    startLoginManager(); // which knows of no lock: that is noticed without a request
    EXPECT_TRUE(waitFor([this] { return log().find("lease ended: ") != std::string::npos; }));
    EXPECT_TRUE(client.renew().starts_with("The sleep setting was turned off by something other"));
    EXPECT_EQ(client.renew(), "");
    loginManager->signal(SIGKILL);
    EXPECT_EQ(end(SIGTERM), 0); // nobody honours what was held
}

TEST_F(LidHelperBehaviour, OnAnAlmostEmptyBatteryItLetsGoByItself) {
    constexpr const char* path = "/org/freedesktop/UPower/devices/DisplayDevice";
    std::uint32_t level = 3;
    const FakeService upower(bus, event, "org.freedesktop.UPower", path,
                             [&](sd_bus_message* call, sd_bus_error*) {
                                 return sd_bus_reply_method_return(call, "v", "u", level);
                             });
    const auto setLevel = [&](std::uint32_t next) {
        level = next;
        EXPECT_GE(sd_bus_emit_signal(upower.bus(), path, "org.freedesktop.DBus.Properties",
                                     "PropertiesChanged", "sa{sv}as", "org.freedesktop.UPower.Device", 0, 0),
                  0);
    };
    ASSERT_EQ(client.renew(), "");
    pass(200);
    EXPECT_EQ(locks(), 1); // low alone is no reason
    setLevel(4);
    EXPECT_TRUE(waitFor([this] { return locks() == 0; }));
    EXPECT_EQ(client.renew(), LidLeaseService::yieldedReason());
    for (const auto* each : {&client, &other})
        EXPECT_EQ(each->renew(), "The battery is almost empty, so this computer may sleep.");
    setLevel(1);
    EXPECT_TRUE(waitFor([this] { return client.renew().empty(); }));
}

} // namespace
} // namespace wakeloft
