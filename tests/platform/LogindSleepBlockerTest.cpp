#include "LogindSleepBlocker.h"
#include "PrivateSystem.h"
#include "support/FakeInhibitService.h"

#include <cstdlib>
#include <optional>

namespace wakeloft {
namespace {

using Dialect = FakeInhibitService::Dialect;

/// The blocker between the login manager and invented desktop services.
struct Blocker : PrivateSystem {
    BusPointer session = bus.connect(event);
    BusConnection system{event, *loop};
    std::optional<LogindSleepBlocker> blocker;
    std::vector<std::string> told;

    Blocker() {
        blocker.emplace(session.get(), system, "Wakeloft", "a test");
        blocker->observeHold([this](std::expected<void, Error> hold) {
            told.push_back(hold ? "held" : std::get<PlatformError>(hold.error()).description);
        });
    }
    int listed() { return locks("idle"); }
    std::string refusal() {
        const auto engaged = blocker->engage();
        return engaged ? "" : std::get<PlatformError>(engaged.error()).description;
    }
};

TEST_F(Blocker, TheFirstSessionServiceIsAskedBesideTheLoginManager) {
    const FakeInhibitService powerManagement(bus, Dialect::powerManagement);
    std::optional<FakeInhibitService> sessionManager(std::in_place, bus, Dialect::sessionManager);
    EXPECT_EQ(refusal(), ""); // it alone is enough
    EXPECT_EQ(sessionManager->held(), 1);
    EXPECT_EQ(sessionManager->latestRequest(), "4 Wakeloft: a test");
    startLoginManager();
    EXPECT_TRUE(waitFor([this] { return listed() == 1; }));
    blocker->release();
    EXPECT_TRUE(waitFor([&] { return sessionManager->held() == 0 && listed() == 0; }));
    EXPECT_EQ(refusal(), "");
    EXPECT_EQ(powerManagement.held(), 0);
    sessionManager.reset(); // the next one takes its place
    EXPECT_TRUE(waitFor([&] { return powerManagement.held() == 1; }));
    EXPECT_EQ(powerManagement.latestRequest(), "0 Wakeloft: a test");
    pass(100);
    EXPECT_TRUE(blocker->isEngaged());
    EXPECT_TRUE(told.empty()); // the login manager's inhibitor was held all along
    blocker.reset();
    EXPECT_TRUE(waitFor([&] { return powerManagement.held() == 0 && listed() == 0; }));
}

TEST_F(Blocker, ARefusingSessionServiceFailsTheStartAndALateGrantIsLetGoOf) {
    startLoginManager();
    {
        const FakeInhibitService refusing(bus, Dialect::sessionManager, {.refuses = true});
        EXPECT_EQ(refusal(), "The desktop refused to hold off sleep: Not today. (org.example.Refused).");
    }
    const FakeInhibitService late(bus, Dialect::sessionManager, {.answersAfterMs = 5500});
    EXPECT_NE(refusal(), ""); // it has waited for five seconds
    EXPECT_EQ(listed(), 0);
    EXPECT_TRUE(waitFor([&] { return late.granted() == 1; }));
    EXPECT_TRUE(waitFor([&] { return late.held() == 0; }));
}

TEST_F(Blocker, UnderKdeTheLoginManagerIsLeftOutWhileItIgnoresIdleness) {
    constexpr const char* kde = "org.kde.Solid.PowerManagement";
    for (const auto& [idleAction, expected] : {std::pair("ignore", 0), std::pair("suspend", 1)}) {
        startLoginManager(idleAction);
        const FakeInhibitService powerManagement(bus, Dialect::powerManagement);
        EXPECT_EQ(refusal(), "");
        EXPECT_EQ(listed(), 1);
        ASSERT_GE(sd_bus_request_name(observer.get(), kde, 0), 0);
        pass(100);
        EXPECT_EQ(listed(), expected) << idleAction;
        blocker->release();
        EXPECT_EQ(refusal(), "");
        EXPECT_EQ(listed(), expected) << idleAction;
        ASSERT_GE(sd_bus_release_name(observer.get(), kde), 0);
        EXPECT_TRUE(waitFor([this] { return listed() == 1; }));
        EXPECT_TRUE(told.empty());
        blocker->release();
        loginManager.reset();
    }
}

TEST_F(Blocker, NothingIsTakenBehindTheUsersBack) {
    EXPECT_TRUE(refusal().starts_with("Nothing on this computer lets Wakeloft hold off sleep. "));
    startLoginManager();
    pass(100);
    EXPECT_EQ(listed(), 0);
    EXPECT_EQ(refusal(), "");
    EXPECT_EQ(listed(), 1);
    loginManager->signal(SIGKILL);
    ASSERT_TRUE(waitFor([this] { return !told.empty(); }));
    EXPECT_FALSE(blocker->isEngaged());
    blocker->release(); // while it is lost: not taken again
    loginManager.reset();
    startLoginManager();
    pass(100);
    EXPECT_EQ(listed(), 0);
}

TEST_F(Blocker, ALostSystemBusIsToldAndTheHoldTakenAgain) {
    std::optional<PrivateBus> systemBus;
    const auto startBus = [&] {
        systemBus.emplace();
        setenv("DBUS_SYSTEM_BUS_ADDRESS", systemBus->address().c_str(), 1);
        observer = systemBus->connect(event);
        startLoginManager();
    };
    startBus();
    EXPECT_EQ(refusal(), "");
    systemBus.reset();
    ASSERT_TRUE(waitFor([this] { return !told.empty(); }));
    EXPECT_FALSE(blocker->isEngaged());
    startBus();
    EXPECT_TRUE(waitFor([this] { return told.back() == "held"; }));
    EXPECT_EQ(listed(), 1);
}

} // namespace
} // namespace wakeloft
