#pragma once

#include "session/DurationFormatter.h"

#include <array>
#include <functional>
#include <string>

namespace wakeloft {

/// The length of a timed session.
struct AwakeDuration {
    Seconds seconds = 0;

    /// What tells two durations apart in a list: their length.
    [[nodiscard]] constexpr Seconds id() const { return seconds; }
    [[nodiscard]] std::string label(const Locale& locale, const DurationFormatter& formatter) const;

    static const std::array<AwakeDuration, 3> presets; ///< offered by default, in this order
    static const AwakeDuration lidClosedDefault;       ///< of Deepwake with no timed session to join

    bool operator==(const AwakeDuration&) const = default;
};

inline constexpr std::array<AwakeDuration, 3> AwakeDuration::presets = {{{1800}, {3600}, {7200}}};
inline constexpr AwakeDuration AwakeDuration::lidClosedDefault = {7200};

} // namespace wakeloft

template <>
struct std::hash<wakeloft::AwakeDuration> {
    std::size_t operator()(const wakeloft::AwakeDuration& duration) const noexcept {
        return std::hash<wakeloft::Seconds>()(duration.seconds);
    }
};
