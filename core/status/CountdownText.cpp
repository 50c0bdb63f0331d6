#include "status/CountdownText.h"

#include <algorithm>
#include <cmath>

namespace wakeloft {

std::string CountdownText::formatted(Seconds remaining, const Locale& locale,
                                     const DurationFormatter& formatter) {
    constexpr Seconds most = 1e12; // keeps an infinite time a number
    const Seconds left = remaining > 0 ? std::floor(std::min(remaining, most)) : 0;
    const auto pattern = left >= 3600 ? DurationFormatter::TimePattern::hourMinuteSecond
                                      : DurationFormatter::TimePattern::minuteSecond;
    return formatter.time(static_cast<std::int64_t>(left), pattern, locale);
}

} // namespace wakeloft
