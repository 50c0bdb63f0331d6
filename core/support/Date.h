#pragma once

#include <compare>

namespace wakeloft {

/// A length of time in seconds.
using Seconds = double;

/// An instant on the wall clock: seconds since 1970-01-01 00:00:00 UTC.
/// Comparison is that of the number, so a NaN date is neither before, after nor equal to any other.
struct Date {
    Seconds secondsSince1970 = 0;

    /// The latest date that a deadline may have, in the year 4001.
    static constexpr Date distantFuture() { return Date{64092211200.0}; }

    friend constexpr auto operator<=>(const Date&, const Date&) = default;
    friend constexpr Date operator+(Date date, Seconds seconds) { return {date.secondsSince1970 + seconds}; }
    friend constexpr Seconds operator-(Date later, Date earlier) {
        return later.secondsSince1970 - earlier.secondsSince1970;
    }
};

} // namespace wakeloft
