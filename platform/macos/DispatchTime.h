#pragma once

#include "support/Date.h"

#include <algorithm>
#include <cstdint>

namespace wakeloft {

/// For dispatch's times and timers. A NaN or negative length counts as none, and none is beyond 30 years.
inline std::int64_t dispatchNanoseconds(Seconds seconds) {
    constexpr Seconds longest = 1e9;
    const Seconds bounded =
        seconds > 0 ? std::min(seconds, longest) : 0; // the order matters: a NaN is not greater
    return static_cast<std::int64_t>(bounded * 1e9);
}

} // namespace wakeloft
