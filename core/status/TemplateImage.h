#pragma once

#include "status/GlyphCanvas.h"

#include <functional>

namespace wakeloft {

/// A picture in the one colour of whatever shows it, drawn afresh for each scale. Sizes are points.
struct TemplateImage {
    double width = 0;
    double height = 0;
    /// Draws into the canvas from its origin, with edges on the pixels of a device that has `deviceScale`
    /// pixels a point, where the origin lies on a pixel's corner.
    std::function<void(GlyphCanvas& canvas, double deviceScale)> draw = [](GlyphCanvas&, double) {};

    [[nodiscard]] bool isEmpty() const { return width <= 0 || height <= 0; }
};

} // namespace wakeloft
