#include "PolkitCheck.h"

#include <cerrno>
#include <cstdint>

namespace wakeloft {

std::expected<BusMessage, PlatformError> PolkitCheck::call(sd_bus* bus, const std::string& uniqueName,
                                                           const std::string& action) {
    constexpr std::uint32_t withoutInteraction = 0;
    sd_bus_message* message = nullptr;
    int result = sd_bus_message_new_method_call(bus, &message, "org.freedesktop.PolicyKit1",
                                                "/org/freedesktop/PolicyKit1/Authority",
                                                "org.freedesktop.PolicyKit1.Authority", "CheckAuthorization");
    BusMessage call(message);
    if (result >= 0)
        result = sd_bus_message_append(message, "(sa{sv})sa{ss}us", "system-bus-name", 1, "name", "s",
                                       uniqueName.c_str(), action.c_str(), 0, withoutInteraction, "");
    if (result < 0)
        return std::unexpected(busFailure(failed, result));
    return call;
}

std::expected<bool, PlatformError> PolkitCheck::isAuthorized(sd_bus_message* reply) {
    if (const auto* error = sd_bus_message_get_error(reply))
        return std::unexpected(busFailure(failed, error, -EIO));
    int isAuthorized = 0;
    int result = sd_bus_message_enter_container(reply, 'r', "bba{ss}");
    if (result >= 0)
        result = sd_bus_message_read(reply, "b", &isAuthorized);
    if (result < 0)
        return std::unexpected(busFailure(failed, result));
    return isAuthorized != 0;
}

} // namespace wakeloft
