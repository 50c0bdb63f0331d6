#include "BusLidHelperRegistration.h"

#include "LidLeaseBus.h"
#include "PolkitCheck.h"
#include "lease/LidHelperService.h"

#include <string_view>

namespace wakeloft {

namespace {

constexpr const char* unknown = "The system bus cannot be asked for the lid helper";

std::expected<BusMessage, PlatformError> askBus(sd_bus* bus, const BusDeadline& deadline, const char* method,
                                                const char* name) {
    sd_bus_message* message = nullptr;
    int result = sd_bus_message_new_method_call(bus, &message, "org.freedesktop.DBus",
                                                "/org/freedesktop/DBus", "org.freedesktop.DBus", method);
    const BusMessage call(message);
    if (result >= 0 && name != nullptr)
        result = sd_bus_message_append(message, "s", name);
    if (result < 0)
        return std::unexpected(busFailure(unknown, result));
    return deadline.call(bus, message, unknown);
}

} // namespace

LidHelperStatus BusLidHelperRegistration::status() const {
    const auto bus = systemBus_.bus();
    constexpr Seconds patience = 1;
    const BusDeadline deadline(patience);
    const auto there = bus ? isThere(*bus, deadline) : std::unexpected(bus.error());
    if (!there)
        trouble_(there.error());
    if (!there || !*there)
        return LidHelperStatus::notFound;
    const auto allowed = isAllowed(*bus, deadline);
    if (!allowed)
        trouble_(allowed.error());
    return allowed && !*allowed ? LidHelperStatus::requiresApproval : LidHelperStatus::enabled;
}

std::expected<void, Error> BusLidHelperRegistration::registerHelper() {
    trouble_({LidHelperService::label, 0,
              std::string("The lid helper (") + LidHelperService::label +
                  ") is not installed, which only the system's package of Wakeloft does."});
    return std::unexpected(LidSleepBlockerError::helperUnavailable());
}

std::expected<bool, PlatformError> BusLidHelperRegistration::isThere(sd_bus* bus,
                                                                     const BusDeadline& deadline) {
    const auto owned = askBus(bus, deadline, "NameHasOwner", LidHelperService::label);
    if (!owned)
        return std::unexpected(owned.error());
    int hasOwner = 0;
    int result = sd_bus_message_read(owned->get(), "b", &hasOwner);
    if (hasOwner != 0)
        return true;
    const auto listed = askBus(bus, deadline, "ListActivatableNames", nullptr);
    if (!listed)
        return std::unexpected(listed.error());
    const char* name = nullptr;
    if (result >= 0)
        result = sd_bus_message_enter_container(listed->get(), 'a', "s");
    while (result > 0 && (result = sd_bus_message_read(listed->get(), "s", &name)) > 0)
        if (std::string_view(name) == LidHelperService::label)
            return true;
    if (result < 0)
        return std::unexpected(busFailure(unknown, result));
    return false;
}

std::expected<bool, PlatformError> BusLidHelperRegistration::isAllowed(sd_bus* bus,
                                                                       const BusDeadline& deadline) {
    const char* ownName = nullptr;
    if (const int result = sd_bus_get_unique_name(bus, &ownName); result < 0)
        return std::unexpected(busFailure(PolkitCheck::failed, result));
    const auto call = PolkitCheck::call(bus, ownName, LidLeaseBus::polkitAction);
    if (!call)
        return std::unexpected(call.error());
    const auto reply = deadline.call(bus, call->get(), PolkitCheck::failed);
    if (!reply)
        return std::unexpected(reply.error());
    return PolkitCheck::isAuthorized(reply->get());
}

} // namespace wakeloft
