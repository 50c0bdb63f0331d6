#pragma once

#include <algorithm>
#include <cmath>

namespace wakeloft {

/// Brings lengths in points to whole device pixels, so that edges stay sharp. `scale`: pixels a point,
/// positive.
struct PixelGrid {
    double scale = 1;

    [[nodiscard]] double pixel() const { return 1 / scale; }
    [[nodiscard]] double round(double points) const { return std::round(points * scale) / scale; }
    /// The width nearest to `points` that lies in the middle of `whole` with both edges on pixels.
    [[nodiscard]] double middle(double points, double whole) const {
        const double odd = std::fmod(std::round(whole * scale), 2);
        return std::max(2 * std::round((points * scale - odd) / 2) + odd, 2 - odd) / scale;
    }
    [[nodiscard]] double atLeastOnePixel(double points) const { return std::max(pixel(), round(points)); }
};

} // namespace wakeloft
