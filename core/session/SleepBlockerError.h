#pragma once

#include <cstdint>

namespace wakeloft {

/// The system refused to create the power assertion.
struct SleepBlockerError {
    std::int32_t code = 0; ///< the system's return code

    static constexpr SleepBlockerError assertionFailed(std::int32_t code) { return {code}; }
    bool operator==(const SleepBlockerError&) const = default;
};

} // namespace wakeloft
