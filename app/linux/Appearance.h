#pragma once

namespace wakeloft {

/// What the user asked the desktop for.
struct Appearance {
    bool isDark = false;
    bool reducesMotion = false;

    bool operator==(const Appearance&) const = default;
};

} // namespace wakeloft
