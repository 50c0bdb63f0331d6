#pragma once

#include "Bus.h"

#include <expected>
#include <string>

namespace wakeloft {

/// The question to polkit whether a client of the bus may do an action. The client is named by its unique
/// name, which the bus vouches for; never by a process, whose number may have a new owner. Nobody is asked
/// for a password: no answer would come in a client's time.
struct PolkitCheck {
    static std::expected<BusMessage, PlatformError> call(sd_bus* bus, const std::string& uniqueName,
                                                         const std::string& action);
    /// False too for what would take a password. `reply` may be an error.
    static std::expected<bool, PlatformError> isAuthorized(sd_bus_message* reply);
    /// The sentence for a check that failed, less its reason.
    static constexpr const char* failed = "polkit cannot be asked whether this is allowed";
};

} // namespace wakeloft
