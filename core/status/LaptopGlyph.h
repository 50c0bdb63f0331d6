#pragma once

#include "status/GlyphCanvas.h"

#include <optional>

namespace wakeloft {

/// The single vessel: a mug standing on a closed laptop. Measured in units of its own, of which the height
/// of its box has 1.675; here y grows upwards from the bottom of the box.
struct LaptopGlyph {
    /// How much of the drawing the pixels can carry. `full`: the laptop's lid is told from its base; `blunt`:
    /// no handle.
    enum class Detail { full, plain, blunt };

    static constexpr double boxHeight = 1.675;
    static constexpr double inkHeight = 1.53;
    static constexpr double outline = 0.145;
    static constexpr double margin = outline / 2; ///< below and above the ink
    static constexpr GlyphBox handle{1.674, 0.7625, 0.5744, 0.6769};
    static constexpr double laptopRightEdge = 1.892;
    static constexpr double laptopMiddle = (outline + laptopRightEdge) / 2;
    static constexpr double inkRightEdge = handle.right() + outline / 2;

    /// Of a drawing whose ink ends at `rightEdge`; never narrower than the laptop needs.
    static constexpr double boxWidth(double rightEdge = inkRightEdge) {
        return (rightEdge >= laptopRightEdge ? rightEdge : laptopRightEdge) + outline;
    }
    static constexpr double aspect(double rightEdge = inkRightEdge) {
        return boxWidth(rightEdge) / boxHeight;
    }
    static constexpr double inkWidth(Detail detail) {
        return detail == Detail::blunt ? boxWidth(laptopRightEdge) : boxWidth();
    }

    /// `height`: of the box, in device pixels.
    static Detail detailForHeightInPixels(double height);

    /// Where the horizontal lines come to lie, in points.
    struct Placement {
        double unit = 1;                   ///< points a unit
        double bottom = 0;                 ///< of the box
        std::optional<double> deviceScale; ///< pixels a point: lines lie on whole pixels; empty: as computed

        /// Where a mug stands `gap` units above the laptop's bottom. On pixels, never in the laptop as long
        /// as any of the mug is left.
        [[nodiscard]] double footY(double gap) const;
        [[nodiscard]] double at(double units) const;
    };

    /// Draws into `box`, whose corners should lie on whole pixels, bottom aligned and in the middle. Canvas
    /// coordinates, so y grows downwards in `box`. `deviceScale`: pixels a point, positive.
    static void draw(bool isFilled, GlyphBox box, Detail detail, double deviceScale, GlyphCanvas& canvas);
};

} // namespace wakeloft
