#pragma once

#include "lid/LidSleepBlockerError.h"
#include "session/SleepBlockerError.h"

#include <string>
#include <variant>

namespace wakeloft {

/// A failure of the system, in the system's own words.
struct PlatformError {
    std::string domain;      ///< who reported it, such as a bus error's name
    long code = 0;           ///< the system's number for it, 0 where it has none
    std::string description; ///< a sentence for the user

    bool operator==(const PlatformError&) const = default;
};

/// What an operation that can fail reports.
using Error = std::variant<SleepBlockerError, LidSleepBlockerError, PlatformError>;

} // namespace wakeloft
