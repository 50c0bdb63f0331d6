#include "LogindSleepBlocker.h"
#include "PrivateSystem.h"
#include "support/FakeInhibitService.h"
#include "support/ListedInhibitors.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <memory>
#include <string>
#include <vector>

namespace wakeloft {
namespace {

using Dialect = FakeInhibitService::Dialect;

/// The blocker against the embedded login manager and invented desktop services, on a private bus.
struct Blocker : testing::Test, PrivateSystem {
    BusPointer session = bus.connect(event);
    BusConnection system{event, *loop};
    std::unique_ptr<LogindSleepBlocker> blocker;
    std::vector<std::string> told;

    void startLoginManager(const char* idleAction = "suspend") {
        PrivateSystem::startLoginManager({std::string("--idle-action=") + idleAction, "--idle-after=3600"});
    }
    void makeBlocker(bool withSession = true) {
        blocker = std::make_unique<LogindSleepBlocker>(withSession ? session.get() : nullptr, system,
                                                       "Wakeloft", "a test");
        blocker->observeHold([this](std::expected<void, Error> hold) {
            told.push_back(hold ? "held" : std::get<PlatformError>(hold.error()).description);
        });
    }
    void settle() { pass(100); }
    int listed() { return listedInhibitors(observer.get(), "idle", "Wakeloft"); }
};

TEST_F(Blocker, TheLoginManagerAloneIsEnough) {
    startLoginManager();
    makeBlocker();
    EXPECT_FALSE(blocker->isEngaged());
    ASSERT_TRUE(blocker->engage());
    ASSERT_TRUE(blocker->engage());
    EXPECT_TRUE(blocker->isEngaged());
    EXPECT_EQ(blocker->limitation(), std::nullopt);
    EXPECT_EQ(listed(), 1);
    blocker->release();
    EXPECT_TRUE(waitFor([&] { return listed() == 0; }));
    ASSERT_TRUE(blocker->engage());
    EXPECT_EQ(listed(), 1);
    blocker.reset(); // its end lets go
    EXPECT_TRUE(waitFor([&] { return listed() == 0; }));
    EXPECT_TRUE(told.empty());
}

TEST_F(Blocker, NothingToAskIsAPlainRefusal) {
    makeBlocker(false);
    const auto engaged = blocker->engage();
    ASSERT_FALSE(engaged);
    const auto& error = std::get<PlatformError>(engaged.error());
    EXPECT_TRUE(error.description.starts_with("Nothing on this computer lets Wakeloft hold off sleep. "))
        << error.description;
    EXPECT_NE(error.description.find("(org.freedesktop.DBus.Error.ServiceUnknown)"), std::string::npos);
    EXPECT_FALSE(blocker->isEngaged());
    startLoginManager();
    settle();
    EXPECT_EQ(listed(), 0); // a refused start takes nothing behind the user's back
    EXPECT_TRUE(blocker->engage());
}

TEST_F(Blocker, NoSystemBusIsAPlainRefusal) {
    setenv("DBUS_SYSTEM_BUS_ADDRESS", "unix:path=/nonexistent/bus", 1);
    makeBlocker(false);
    const auto engaged = blocker->engage();
    ASSERT_FALSE(engaged);
    EXPECT_NE(std::get<PlatformError>(engaged.error()).description.find("The system bus cannot be reached"),
              std::string::npos);
}

TEST_F(Blocker, TheFirstSessionServiceIsAskedBesideTheLoginManager) {
    startLoginManager();
    const FakeInhibitService powerManagement(bus, Dialect::powerManagement);
    {
        const FakeInhibitService sessionManager(bus, Dialect::sessionManager);
        makeBlocker();
        ASSERT_TRUE(blocker->engage());
        EXPECT_EQ(sessionManager.held(), 1);
        EXPECT_EQ(sessionManager.latestRequest(), "4 Wakeloft: a test");
        EXPECT_EQ(powerManagement.held(), 0);
        EXPECT_EQ(listed(), 1);
        blocker->release();
        EXPECT_TRUE(waitFor([&] { return sessionManager.held() == 0; }));
        ASSERT_TRUE(blocker->engage());
    }
    // The first one went: the next takes its place.
    EXPECT_TRUE(waitFor([&] { return powerManagement.held() == 1; }));
    settle();
    EXPECT_TRUE(blocker->isEngaged());
    EXPECT_TRUE(told.empty()); // the login manager's inhibitor was held all along
    blocker->release();
    EXPECT_TRUE(waitFor([&] { return powerManagement.held() == 0; }));
}

TEST_F(Blocker, ARefusingSessionServiceFailsTheStartAndLetsGoOfTheRest) {
    startLoginManager();
    const FakeInhibitService sessionManager(bus, Dialect::sessionManager,
                                            {.refuses = true, .answersAfterMs = 0});
    makeBlocker();
    const auto engaged = blocker->engage();
    ASSERT_FALSE(engaged);
    EXPECT_EQ(std::get<PlatformError>(engaged.error()).description,
              "The desktop refused to hold off sleep: Not today. (org.example.Refused).");
    EXPECT_TRUE(waitFor([&] { return listed() == 0; }));
}

TEST_F(Blocker, ALateGrantIsLetGoOf) {
    startLoginManager();
    const FakeInhibitService sessionManager(bus, Dialect::sessionManager,
                                            {.refuses = false, .answersAfterMs = 5500});
    makeBlocker();
    EXPECT_FALSE(blocker->engage()); // it has waited for five seconds
    EXPECT_EQ(listed(), 0);
    EXPECT_TRUE(waitFor([&] { return sessionManager.granted() == 1; }));
    EXPECT_TRUE(waitFor([&] { return sessionManager.held() == 0; }));
}

TEST_F(Blocker, LateKdeTakesTheLoginManagersPlace) {
    startLoginManager("ignore");
    const FakeInhibitService powerManagement(bus, Dialect::powerManagement);
    makeBlocker();
    ASSERT_TRUE(blocker->engage());
    EXPECT_EQ(listed(), 1);
    ASSERT_GE(sd_bus_request_name(observer.get(), "org.kde.Solid.PowerManagement", 0), 0);
    EXPECT_TRUE(waitFor([&] { return listed() == 0; }));
    EXPECT_TRUE(blocker->isEngaged());
    ASSERT_GE(sd_bus_release_name(observer.get(), "org.kde.Solid.PowerManagement"), 0);
    EXPECT_TRUE(waitFor([&] { return listed() == 1; }));
    EXPECT_TRUE(told.empty());
}

TEST_F(Blocker, ASessionServiceWithoutALoginManagerIsEnough) {
    const FakeInhibitService sessionManager(bus, Dialect::sessionManager);
    makeBlocker();
    ASSERT_TRUE(blocker->engage());
    EXPECT_EQ(blocker->limitation(), std::nullopt);
    startLoginManager(); // late: taken as well
    EXPECT_TRUE(waitFor([&] { return listed() == 1; }));
}

TEST_F(Blocker, UnderKdeTheLoginManagerIsLeftOutWhileItIgnoresIdleness) {
    for (const auto& [idleAction, expected] : {std::pair("ignore", 0), std::pair("suspend", 1)}) {
        SCOPED_TRACE(idleAction);
        startLoginManager(idleAction);
        const FakeInhibitService powerManagement(bus, Dialect::powerManagement);
        ASSERT_GE(sd_bus_request_name(observer.get(), "org.kde.Solid.PowerManagement", 0), 0);
        makeBlocker();
        ASSERT_TRUE(blocker->engage());
        EXPECT_EQ(powerManagement.held(), 1);
        EXPECT_EQ(listed(), expected);
        blocker.reset();
        sd_bus_release_name(observer.get(), "org.kde.Solid.PowerManagement");
        loginManager.reset();
        ASSERT_TRUE(waitFor([&] { return listed() < 0; }));
    }
}

TEST_F(Blocker, ALostHoldIsToldAndTakenAgain) {
    startLoginManager();
    makeBlocker();
    ASSERT_TRUE(blocker->engage());
    loginManager->signal(SIGKILL);
    ASSERT_TRUE(waitFor([&] { return !told.empty(); }));
    EXPECT_TRUE(told.back().starts_with("Nothing on this computer lets Wakeloft hold off sleep. "))
        << told.back();
    EXPECT_FALSE(blocker->isEngaged());
    loginManager.reset();
    startLoginManager();
    ASSERT_TRUE(waitFor([&] { return told.back() == "held"; }));
    EXPECT_TRUE(blocker->isEngaged());
    EXPECT_EQ(listed(), 1);

    loginManager->signal(SIGKILL);
    ASSERT_TRUE(waitFor([&] { return told.back() != "held"; }));
    blocker->release(); // while it is lost: not taken again
    loginManager.reset();
    startLoginManager();
    settle();
    EXPECT_EQ(listed(), 0);
}

TEST_F(Blocker, ALostSystemBusIsToldAndTheHoldTakenAgain) {
    auto systemBus = std::make_unique<PrivateBus>();
    setenv("DBUS_SYSTEM_BUS_ADDRESS", systemBus->address().c_str(), 1);
    observer = systemBus->connect(event);
    startLoginManager();
    makeBlocker();
    ASSERT_TRUE(blocker->engage());
    systemBus.reset();
    ASSERT_TRUE(waitFor([&] { return !told.empty(); }));
    EXPECT_FALSE(blocker->isEngaged());
    loginManager.reset();
    systemBus = std::make_unique<PrivateBus>();
    setenv("DBUS_SYSTEM_BUS_ADDRESS", systemBus->address().c_str(), 1);
    observer = systemBus->connect(event);
    startLoginManager();
    EXPECT_TRUE(waitFor([&] { return told.back() == "held"; }));
    EXPECT_EQ(listed(), 1);
}

} // namespace
} // namespace wakeloft
