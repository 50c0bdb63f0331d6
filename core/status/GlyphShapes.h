#pragma once

#include "status/GlyphCanvas.h"
#include "status/PixelGrid.h"

#include <span>

namespace wakeloft {

struct GlyphCorner {
    GlyphPoint at;
    double radius = 0; ///< zero or less: sharp
};

/// Adds a closed polygon to the canvas's path. What two roundings take of a side must not be more than it.
void addPolygon(GlyphCanvas& canvas, std::span<const GlyphCorner> corners);
/// Radii are cut to what fits.
void addBox(GlyphCanvas& canvas, GlyphBox box, double topRadius = 0, double bottomRadius = 0);

/// A mug seen from its side. Coordinates are those of the ink's outer edges.
struct Mug {
    enum class HandleSide { left, right };

    GlyphBox body;
    GlyphBox handle; ///< an ellipse, partly behind the body; no width: no handle
    double outline = 0;
    double topRadius = 0;
    double bottomRadius = 0;

    /// A mug that fills `box`.
    static Mug in(GlyphBox box, HandleSide side, PixelGrid grid);
    void draw(GlyphCanvas& canvas, bool isFilled) const;
};

/// Two mugs, back to back.
void drawMugPair(GlyphCanvas& canvas, GlyphBox box, bool isFilled, PixelGrid grid);
constexpr double mugPairAspect = 1.75;

/// A clock with its hands cut out, at three o'clock, in a square box.
void drawClock(GlyphCanvas& canvas, GlyphBox box, PixelGrid grid);
/// The least side from `side` up whose clock has its hands in the middle.
double clockSide(double side, PixelGrid grid);

} // namespace wakeloft
