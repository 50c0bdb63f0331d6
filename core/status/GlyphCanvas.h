#pragma once

namespace wakeloft {

struct GlyphPoint {
    double x = 0;
    double y = 0;

    bool operator==(const GlyphPoint&) const = default;
};

struct GlyphBox {
    double x = 0;
    double y = 0;
    double width = 0;
    double height = 0;

    [[nodiscard]] constexpr double right() const { return x + width; }
    [[nodiscard]] constexpr double bottom() const { return y + height; }
    [[nodiscard]] constexpr GlyphPoint center() const { return {x + width / 2, y + height / 2}; }
    [[nodiscard]] constexpr GlyphBox insetBy(double by) const {
        return {x + by, y + by, width - 2 * by, height - 2 * by};
    }

    bool operator==(const GlyphBox&) const = default;
};

/// What a glyph is drawn into: ink of one colour, which the view chooses. Coordinates are points, y grows
/// downwards. `moveTo` to `ellipse` add to a path; `stroke`, `fill` and `clear` use it up.
class GlyphCanvas {
  public:
    virtual ~GlyphCanvas() = default;

    virtual void moveTo(GlyphPoint to) = 0;
    virtual void lineTo(GlyphPoint to) = 0;
    virtual void curveTo(GlyphPoint control1, GlyphPoint control2, GlyphPoint to) = 0;
    virtual void closePath() = 0;
    /// A closed ellipse that fills `box`.
    virtual void ellipse(GlyphBox box) = 0;

    /// Inks a line of `width` along the path, with round ends and joins.
    virtual void stroke(double width) = 0;
    virtual void fill() = 0;
    /// Takes away the ink inside the path.
    virtual void clear() = 0;
};

} // namespace wakeloft
