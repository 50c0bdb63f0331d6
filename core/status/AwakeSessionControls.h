#pragma once

#include "support/Date.h"

#include <cstdint>
#include <optional>

namespace wakeloft {

/// What the panel offers for the session: the preset durations, or to cancel the running timer.
struct AwakeSessionControls {
    enum Case : std::uint8_t { presets, cancelTimer };

    static constexpr Case shown(bool isOn, std::optional<Date> activeUntil) {
        return isOn && activeUntil ? cancelTimer : presets;
    }
};

} // namespace wakeloft
