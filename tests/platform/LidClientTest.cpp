#include "BusLidHelperRegistration.h"
#include "LidLeaseBusConnection.h"
#include "PrivateSystem.h"
#include "lid/XPCLidSleepBlocker.h"
#include "support/BusDaemon.h"
#include "support/BusText.h"
#include "support/FakeService.h"
#include "support/LeaseHolder.h"

#include <csignal>
#include <optional>

namespace wakeloft {
namespace {

const Error unavailable = LidSleepBlockerError::helperUnavailable();
std::optional<Error> refused(const std::string& reason) {
    return LidSleepBlockerError::helperRefused(reason);
}

/// The app's side of Deepwake on a private bus.
struct LidClient : PrivateSystem {
    std::string trouble; ///< what was told
    std::function<void(const PlatformError&)> told = [this](const PlatformError& error) {
        trouble += error.description;
    };
    bool suspends = false;
    BusConnection system{event, *loop};
    BusLidHelperRegistration registration{system, told};
    std::optional<XPCLidSleepBlocker> blocker;
    std::optional<std::optional<Error>> answer; ///< to the latest request

    LidClient() {
        blocker.emplace(registration, LidHelperService::label, LidSleepLease::replyTimeout,
                        LidLeaseBusConnection::factory(event, [this] { return suspends; }, told), *loop);
    }
    void renew() {
        answer.reset();
        blocker->renewUntil(Date{wallClock() + 25}, [this](auto error) { answer = std::move(error); });
    }
    bool isAnswered(const std::optional<Error>& outcome) {
        return waitFor([&] { return answer.has_value(); }) && *answer == outcome;
    }
};

TEST_F(LidClient, WhatTheHelperSaysIsTheOutcome) {
    renew();
    EXPECT_TRUE(isAnswered(unavailable));
    EXPECT_NE(trouble.find("org.freedesktop.DBus.Error.ServiceUnknown"), std::string::npos) << trouble;
    std::string client;
    std::string request;
    std::function<int(sd_bus_message*, sd_bus_error*)> reply;
    const FakeService helper(bus, event, LidHelperService::label, "/com/wakeloft/app/lidhelper",
                             [&](sd_bus_message* call, sd_bus_error* error) {
                                 client = sd_bus_message_get_sender(call);
                                 request = bodyText(call);
                                 return reply(call, error);
                             });
    reply = [](auto* call, auto*) { return sd_bus_reply_method_return(call, "u", 7U); };
    renew();
    EXPECT_TRUE(isAnswered(unavailable)); // what cannot be read grants nothing
    reply = [](auto*, auto* error) { return sd_bus_error_set(error, "org.example.Mood", "Not you."); };
    renew();
    EXPECT_TRUE(isAnswered(refused("Not you.")));
    for (const std::string reason : {"No.", ""}) {
        suspends = reason.empty();
        reply = [&](auto* call, auto*) { return sd_bus_reply_method_return(call, "s", reason.c_str()); };
        renew();
        EXPECT_TRUE(isAnswered(reason.empty() ? std::nullopt : refused(reason)));
        EXPECT_EQ(request,
                  suspends ? R"(... [{"suspend_if_closed" 1}])" : R"(... [{"suspend_if_closed" 0}])");
    }
    EXPECT_TRUE(isOwned(client.c_str()));
    blocker.reset(); // it leaves the bus
    EXPECT_TRUE(waitFor([&] { return !isOwned(client.c_str()); }));
}

TEST_F(LidClient, NothingWaitsForABusThatHangs) {
    const auto secondsFor = [](const std::function<void()>& work) {
        const double start = wallClock();
        work();
        return wallClock() - start;
    };
    EXPECT_EQ(registration.status(), LidHelperStatus::notFound);
    EXPECT_EQ(trouble, "");
    kill(daemonOf(observer.get()), SIGSTOP);
    EXPECT_LT(secondsFor([this] { renew(); }), 0.5);
    const double asking = secondsFor([&] { EXPECT_EQ(registration.status(), LidHelperStatus::notFound); });
    EXPECT_GT(asking, 0.9);
    EXPECT_LT(asking, 2);
    EXPECT_TRUE(isAnswered(unavailable));
    renew();
    EXPECT_LT(secondsFor([this] { blocker.reset(); }), 0.5);
    kill(daemonOf(observer.get()), SIGCONT);
}

} // namespace
} // namespace wakeloft
