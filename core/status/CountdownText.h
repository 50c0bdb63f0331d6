#pragma once

#include "session/DurationFormatter.h"

#include <string>

namespace wakeloft {

/// The countdown in the panel.
struct CountdownText {

    /// The time left, never more than there is: whole seconds rounded down, with hours from one hour up.
    /// NaN and negative read as none left.
    static std::string formatted(Seconds remaining, const Locale& locale, const DurationFormatter& formatter);
};

} // namespace wakeloft
