#include "BusLidHelperRegistration.h"
#include "LidHelperFakes.h"
#include "LidLeaseBusConnection.h"
#include "PrivateSystem.h"
#include "lease/LidHelperRefusal.h"
#include "lease/LidHelperService.h"
#include "lid/XPCLidSleepBlocker.h"
#include "support/BusText.h"
#include "support/FakeService.h"
#include "support/ListedInhibitors.h"

#include <chrono>
#include <csignal>
#include <cstdlib>
#include <fstream>
#include <memory>

namespace wakeloft {
namespace {

using Opinion = FakePolkit::Opinion;
constexpr const char* helperName = LidHelperService::label;
const Error unavailable = LidSleepBlockerError::helperUnavailable();
const std::optional<Error> confirmed;
std::optional<Error> refused(const std::string& reason) {
    return LidSleepBlockerError::helperRefused(reason);
}

/// The app's side of Deepwake on a private bus.
struct LidClient : testing::Test, PrivateSystem {
    std::vector<std::string> asked; ///< of polkit, once it has ended
    std::unique_ptr<ServiceThread> polkit;
    std::unique_ptr<ChildProcess> helper;
    std::string trouble; ///< the latest
    std::function<void(const PlatformError&)> told = [this](const PlatformError& error) {
        trouble = error.description;
    };
    bool suspends = false;
    BusConnection system{event, *loop};
    BusLidHelperRegistration registration{system, told};
    std::unique_ptr<XPCLidSleepBlocker> blocker;

    LidClient() {
        startPolkit(Opinion::yes);
        makeBlocker();
    }
    void startPolkit(Opinion opinion) {
        polkit.reset();
        polkit = std::make_unique<ServiceThread>([this, opinion](sd_event* thread) {
            std::shared_ptr<FakePolkit> fake(new FakePolkit(bus, thread), [this](FakePolkit* each) {
                asked = each->asked;
                delete each;
            });
            fake->opinion = opinion;
            return fake;
        });
    }
    void makeBlocker() {
        blocker = std::make_unique<XPCLidSleepBlocker>(
            registration, helperName, LidSleepLease::replyTimeout,
            LidLeaseBusConnection::factory(event, [this] { return suspends; }, told), *loop);
    }
    void startHelper() {
        if (!loginManager)
            startLoginManager();
        helper = std::make_unique<ChildProcess>(std::vector<std::string>{WAKELOFT_LID_HELPER});
        ASSERT_TRUE(waitFor([&] { return isOwned(helperName); }));
    }
    int locks() { return listedInhibitors(observer.get(), "sleep:handle-lid-switch", "Wakeloft"); }

    std::optional<std::optional<Error>> answer; ///< to the latest request
    void ask(bool isRenewal) {
        const auto now = std::chrono::system_clock::now().time_since_epoch();
        answer.reset();
        const auto completion = [this](std::optional<Error> error) { answer = std::move(error); };
        if (isRenewal)
            blocker->renewUntil(Date{std::chrono::duration<double>(now).count() + 25}, completion);
        else
            blocker->revoke(completion);
    }
    std::optional<Error> outcome(bool isRenewal) {
        ask(isRenewal);
        EXPECT_TRUE(runUntil(event, [&] { return answer.has_value(); }, 6000));
        return answer.value_or(Error(PlatformError{"", 0, "no outcome"}));
    }
    std::optional<Error> renew() { return outcome(true); }
    std::optional<Error> revoke() { return outcome(false); }
    bool wasTold(const char* text) const { return trouble.find(text) != std::string::npos; }
};

double secondsFor(const std::function<void()>& work) {
    const auto start = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

TEST_F(LidClient, TheRealHelperHoldsTheLockForAsLongAsTheClientIsThere) {
    startHelper();
    EXPECT_EQ(renew(), confirmed);
    EXPECT_EQ(locks(), 1);
    EXPECT_EQ(revoke(), confirmed);
    EXPECT_EQ(locks(), 0);
    EXPECT_EQ(renew(), confirmed);
    EXPECT_EQ(locks(), 1);
    blocker.reset(); // leaves the bus
    EXPECT_TRUE(waitFor([&] { return locks() == 0; }));
    EXPECT_EQ(trouble, "");

    makeBlocker();
    const auto foreign = otherLock("sleep:handle-lid-switch", "Wakeloft");
    EXPECT_EQ(renew(), refused(LidHelperRefusal::settingOnElsewhere().reason()));
    startPolkit(Opinion::no);
    makeBlocker();
    EXPECT_EQ(renew(), refused("Only who sits at this computer may keep it awake with the lid closed."));
    EXPECT_TRUE(wasTold("org.freedesktop.DBus.Error.AccessDenied")) << trouble;
    EXPECT_EQ(revoke(), confirmed);
}

TEST_F(LidClient, AHelperThatIsGoneFailsAndTheNextOneServesAnew) {
    startHelper();
    ASSERT_EQ(renew(), confirmed);
    helper->signal(SIGSTOP);
    ask(true);
    pass(100);
    helper->signal(SIGKILL);
    EXPECT_TRUE(waitFor([&] { return answer == std::optional(unavailable); }));
    EXPECT_TRUE(wasTold("org.freedesktop.DBus.Error.NoReply")) << trouble;
    EXPECT_EQ(renew(), unavailable);
    EXPECT_TRUE(wasTold("org.freedesktop.DBus.Error.ServiceUnknown")) << trouble;
    startHelper();
    EXPECT_EQ(renew(), confirmed);
    EXPECT_EQ(locks(), 1);
}

TEST_F(LidClient, NothingWaitsForABusThatHangs) {
    startHelper();
    ASSERT_EQ(registration.status(), LidHelperStatus::enabled);
    sd_bus_creds* credentials = nullptr;
    pid_t daemon = 0;
    ASSERT_GE(sd_bus_get_owner_creds(observer.get(), SD_BUS_CREDS_PID, &credentials), 0);
    ASSERT_GE(sd_bus_creds_get_pid(credentials, &daemon), 0);
    sd_bus_creds_unref(credentials);
    kill(daemon, SIGSTOP);
    EXPECT_LT(secondsFor([&] { ask(true); }), 0.5);
    EXPECT_FALSE(runUntil(event, [&] { return answer.has_value(); }, 1000));
    const double asking = secondsFor([&] { EXPECT_EQ(registration.status(), LidHelperStatus::notFound); });
    EXPECT_GT(asking, 0.9);
    EXPECT_LT(asking, 2);
    EXPECT_TRUE(runUntil(event, [&] { return answer == std::optional(unavailable); }, 4000));
    ask(true);
    EXPECT_LT(secondsFor([&] { blocker.reset(); }), 0.5);
    kill(daemon, SIGCONT);
}

TEST_F(LidClient, TheRegistrationSaysHowTheHelperStands) {
    EXPECT_EQ(registration.status(), LidHelperStatus::notFound);
    EXPECT_EQ(trouble, "");
    EXPECT_EQ(blocker->prepare(), std::unexpected(unavailable));
    EXPECT_TRUE(wasTold("is not installed"));
    std::ofstream(bus.directory() / "helper.service")
        << "[D-BUS Service]\nName=" << helperName << "\nExec=/bin/false\n";
    EXPECT_TRUE(waitFor([&] { return registration.status() == LidHelperStatus::enabled; }));
    startPolkit(Opinion::no);
    trouble.clear();
    EXPECT_EQ(registration.status(), LidHelperStatus::requiresApproval);
    EXPECT_EQ(trouble, "");
    startPolkit(Opinion::never);
    EXPECT_EQ(registration.status(), LidHelperStatus::enabled); // for the helper to say why not
    EXPECT_TRUE(wasTold("polkit cannot be asked"));
    polkit.reset();
    const char* ownName = nullptr;
    sd_bus_get_unique_name(*system.bus(), &ownName);
    EXPECT_EQ(asked,
              std::vector{std::string("system-bus-name ") + ownName + " com.wakeloft.app.lidhelper.lease 0"});
    EXPECT_FALSE(isOwned(helperName)); // asking started nothing

    setenv("DBUS_SYSTEM_BUS_ADDRESS", "unix:path=/nonexistent/bus", 1);
    BusConnection nowhere(event, *loop);
    EXPECT_EQ(BusLidHelperRegistration(nowhere, told).status(), LidHelperStatus::notFound);
    EXPECT_TRUE(wasTold("The system bus cannot be reached"));
    EXPECT_EQ(renew(), unavailable);
}

TEST_F(LidClient, AHelperThatTalksRubbishIsNoHelper) {
    std::vector<std::string> calls;
    const FakeService invented(bus, event, helperName, "/com/wakeloft/app/lidhelper",
                               [&](sd_bus_message* call, sd_bus_error* error) {
                                   calls.push_back(bodyText(call));
                                   return calls.size() == 1 ? sd_bus_reply_method_return(call, "u", 7U)
                                                            : sd_bus_error_set(error, "org.example.Mood", "");
                               });
    EXPECT_EQ(renew(), unavailable);
    EXPECT_TRUE(wasTold("answer cannot be read"));
    suspends = true;
    EXPECT_EQ(renew(), refused("The lid helper refused (org.example.Mood)."));
    EXPECT_EQ(revoke(), confirmed); // what leaves the bus holds nothing
    EXPECT_TRUE(wasTold("did not end the lease (org.example.Mood)"));
    EXPECT_EQ(calls, (std::vector<std::string>{R"(... [{"suspend_if_closed" 0}])",
                                               R"(... [{"suspend_if_closed" 1}])", ""}));
}

} // namespace
} // namespace wakeloft
