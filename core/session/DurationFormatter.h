#pragma once

#include "support/Date.h"
#include "support/Locale.h"

#include <cstdint>
#include <string>

namespace wakeloft {

/// A duration in whole hours and minutes, rounded half to even to the minute. NaN and negative count as
/// nothing.
struct HoursAndMinutes {
    std::int64_t hours = 0;
    std::int64_t minutes = 0;

    static HoursAndMinutes rounding(Seconds seconds);
    bool operator==(const HoursAndMinutes&) const = default;
};

/// Words durations in the user's language. The caller decides the units; the formatter only words them.
class DurationFormatter {
  public:
    enum class Width { abbreviated, spoken };
    enum class TimePattern { minuteSecond, hourMinuteSecond };

    virtual ~DurationFormatter() = default;

    /// "1 hr, 30 min", "30 min"; a unit of zero is dropped, nothing at all reads as zero minutes.
    [[nodiscard]] virtual std::string units(HoursAndMinutes duration, Width width,
                                            const Locale& locale) const = 0;

    /// "1:05:09", "4:07".
    [[nodiscard]] virtual std::string time(std::int64_t seconds, TimePattern pattern,
                                           const Locale& locale) const = 0;
};

} // namespace wakeloft
