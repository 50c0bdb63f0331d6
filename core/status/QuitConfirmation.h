#pragma once

#include "support/Date.h"

#include <optional>
#include <variant>

namespace wakeloft {

/// What is asked before quitting. Under one full minute is told as no time at all.
struct QuitConfirmation {
    struct AwakeMode {
        std::optional<Seconds> remaining; ///< whole minutes
        bool operator==(const AwakeMode&) const = default;
    };
    struct Deepwake {
        std::optional<Seconds> remaining; ///< whole minutes
        bool operator==(const Deepwake&) const = default;
    };
    struct QuitNow {
        bool operator==(const QuitNow&) const = default;
    };
    std::variant<AwakeMode, Deepwake, QuitNow> value;

    static QuitConfirmation asked(bool isAwakeOn, bool keepsLidClosedAwake, std::optional<Seconds> remaining);

    bool operator==(const QuitConfirmation&) const = default;
};

} // namespace wakeloft
