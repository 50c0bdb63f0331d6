#pragma once

#include <systemd/sd-bus.h>

#include <cstdint>
#include <expected>
#include <string>
#include <vector>

namespace wakeloft {

/// An inhibitor as the login manager lists it.
struct ListedInhibitor {
    std::string what, who, why, mode;
    std::uint32_t user = 0;
    std::uint32_t process = 0;

    /// What an answer to ListInhibitors holds, or a negative errno.
    static std::expected<std::vector<ListedInhibitor>, int> readAll(sd_bus_message* reply);
};

} // namespace wakeloft
