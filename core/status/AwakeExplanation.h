#pragma once

#include "support/Date.h"

#include <cstdint>
#include <optional>

namespace wakeloft {

/// Which sentence explains the state in the panel.
struct AwakeExplanation {
    enum Case : std::uint8_t {
        sleepsNormally,
        awakeIndefinitely,
        awakeUntilSessionEnds,
        awakeWithLidClosedIndefinitely,
        awakeWithLidClosedUntilSessionEnds
    };

    static Case describing(bool isOn, std::optional<Date> activeUntil, bool keepsLidClosedAwake);
};

} // namespace wakeloft
