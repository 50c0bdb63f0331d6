#pragma once

#include "session/AwakeDuration.h"

#include <optional>
#include <variant>

namespace wakeloft {

/// The session's state as a screen reader tells it.
struct SpokenStatus {
    struct TimeLeft {
        AwakeDuration duration; ///< whole minutes
        bool operator==(const TimeLeft&) const = default;
    };
    struct Off {
        bool operator==(const Off&) const = default;
    };
    struct On {
        bool operator==(const On&) const = default;
    };
    struct LessThanAMinuteLeft {
        bool operator==(const LessThanAMinuteLeft&) const = default;
    };
    std::variant<TimeLeft, Off, On, LessThanAMinuteLeft> value;

    static SpokenStatus describing(bool isOn, std::optional<Seconds> remaining);

    bool operator==(const SpokenStatus&) const = default;
};

} // namespace wakeloft
