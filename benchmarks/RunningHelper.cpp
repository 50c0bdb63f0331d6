#include "RunningHelper.h"

#include "BusCalls.h"
#include "Fail.h"
#include "LidLeaseBus.h"
#include "lease/LidHelperService.h"

#include <unistd.h>

namespace wakeloft {

namespace {

constexpr auto patience = std::chrono::seconds(5);

double wallClock() {
    return std::chrono::duration<double>(std::chrono::system_clock::now().time_since_epoch()).count();
}

/// The bus learns from the kernel whose connection it is.
BusPointer connectToSystemBusAs(uid_t user) {
    const uid_t own = geteuid();
    if (seteuid(user) < 0)
        fail("Cannot act for user " + std::to_string(user) + ".");
    BusPointer bus = connectToSystemBus();
    if (seteuid(own) < 0)
        fail("Cannot act for ourselves again.");
    return bus;
}

void ping(sd_bus* bus, const char* name) {
    BusError error;
    check("A program does not answer",
          sd_bus_call_method(bus, name, "/", "org.freedesktop.DBus.Peer", "Ping", error.get(), nullptr,
                             nullptr),
          error.get());
}

} // namespace

NameWatch::NameWatch(const char* name)
    : name_(name),
      bus_(connectToSystemBus()),
      watch_(need(watchBusName(bus_.get(), name, [this](const std::string& owner) {
          isOwned_ = !owner.empty();
          changedAt_ = Clock::now();
      }))) {
    if (sd_bus_get_name_creds(bus_.get(), name, 0, nullptr) >= 0) // answered after the watch is in place
        fail(std::string(name) + " has an owner already.");
}

Clock::time_point NameWatch::wait(bool isOwned) {
    const auto end = Clock::now() + patience;
    while (isOwned_ != isOwned) {
        process(bus_.get(), 100'000);
        if (Clock::now() > end)
            fail(std::string(name_) + (isOwned ? " gets no owner." : " keeps its owner."));
    }
    return changedAt_;
}

RunningHelper::RunningHelper(const MeasuredPrograms& programs)
    : helperName_(LidHelperService::label),
      polkitName_(bareServiceName),
      polkit_({programs.bareService}),
      helper_({programs.lidHelper}) {
    polkitName_.waitForOwner();
    helperName_.waitForOwner();
}

LeaseClient::LeaseClient(uid_t user) : bus_(connectToSystemBusAs(user)) {}

void LeaseClient::renew() const {
    constexpr double length = 25;
    BusError error;
    sd_bus_message* reply = nullptr;
    int result =
        sd_bus_call_method(bus_.get(), LidHelperService::label, LidLeaseBus::path, LidLeaseBus::interface,
                           "RenewLease", error.get(), &reply, "da{sv}", wallClock() + length, 0);
    const BusMessage owned(reply);
    check("The helper cannot be asked", result, error.get());
    const char* reason = nullptr;
    result = sd_bus_message_read(reply, "s", &reason);
    check("The helper's answer cannot be read", result);
    if (*reason != '\0')
        fail(std::string("The helper refuses: ") + reason);
}

void LeaseClient::revoke() const {
    BusError error;
    check("The lease cannot be ended",
          sd_bus_call_method(bus_.get(), LidHelperService::label, LidLeaseBus::path, LidLeaseBus::interface,
                             "RevokeLease", error.get(), nullptr, nullptr),
          error.get());
}

void LeaseClient::pingHelper() const {
    ping(bus_.get(), LidHelperService::label);
}

void LeaseClient::pingBareService() const {
    ping(bus_.get(), bareServiceName);
}

} // namespace wakeloft
