#pragma once

#include "status/GlyphCanvas.h"

#include <vector>

namespace wakeloft {

/// Inks a square of pixels, smoothly, without a toolkit: at build time there is none.
class PixelCanvas final : public GlyphCanvas {
  public:
    /// A point is `scale` pixels long; the origin is `inset` pixels from the left and the top.
    PixelCanvas(int side, double scale, double inset);

    void moveTo(GlyphPoint to) override;
    void lineTo(GlyphPoint to) override;
    void curveTo(GlyphPoint control1, GlyphPoint control2, GlyphPoint to) override;
    void closePath() override;
    void ellipse(GlyphBox box) override;
    void stroke(double width) override;
    void fill() override;
    void clear() override;

    /// How much of each pixel is inked, row by row from the top: 0 to 1.
    [[nodiscard]] const std::vector<double>& ink() const { return ink_; }

  private:
    struct Line {
        std::vector<GlyphPoint> points; ///< in pixels
        bool isClosed = false;
    };
    struct Span {
        double left = 0;
        double right = 0;
    };

    [[nodiscard]] GlyphPoint inPixels(GlyphPoint point) const;
    void addPoint(GlyphPoint pixel);
    [[nodiscard]] std::vector<Span> filledAt(double y) const;
    [[nodiscard]] std::vector<Span> strokedAt(double y, double radius) const;
    template <class SpansAt, class Mix>
    void cover(SpansAt spansAt, Mix mix);

    int side_;
    double scale_;
    double inset_;
    std::vector<Line> path_;
    std::vector<double> ink_;
};

} // namespace wakeloft
