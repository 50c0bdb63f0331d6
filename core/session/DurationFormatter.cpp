#include "session/DurationFormatter.h"

#include <algorithm>
#include <cmath>

namespace wakeloft {

namespace {
constexpr double mostMinutes = 1e15; // keeps an infinite duration a number
}

HoursAndMinutes HoursAndMinutes::rounding(Seconds seconds) {
    if (!(seconds > 0)) // also NaN
        return {};
    const double exact = std::min(seconds / 60, mostMinutes);
    double minutes = std::floor(exact);
    const double rest = exact - minutes;
    if (rest > 0.5 || (rest == 0.5 && std::fmod(minutes, 2) != 0))
        minutes += 1;
    const auto whole = static_cast<std::int64_t>(minutes);
    return {whole / 60, whole % 60};
}

} // namespace wakeloft
