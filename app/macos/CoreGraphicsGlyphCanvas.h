#pragma once

#include "status/GlyphCanvas.h"

#include <CoreGraphics/CoreGraphics.h>

namespace wakeloft {

/// Draws a glyph in black into a context whose y grows downwards. What is below it stays: the glyph has a
/// layer of its own, which joins the rest when the canvas ends.
class CoreGraphicsGlyphCanvas final : public GlyphCanvas {
  public:
    /// The context must outlive the canvas.
    explicit CoreGraphicsGlyphCanvas(CGContextRef context);
    CoreGraphicsGlyphCanvas(const CoreGraphicsGlyphCanvas&) = delete;
    CoreGraphicsGlyphCanvas& operator=(const CoreGraphicsGlyphCanvas&) = delete;
    ~CoreGraphicsGlyphCanvas() override;

    void moveTo(GlyphPoint to) override;
    void lineTo(GlyphPoint to) override;
    void curveTo(GlyphPoint control1, GlyphPoint control2, GlyphPoint to) override;
    void closePath() override;
    void ellipse(GlyphBox box) override;
    void stroke(double width) override;
    void fill() override;
    void clear() override;

  private:
    CGContextRef context_;
};

/// Device pixels a point in `context`; 1 where it does not say.
double deviceScale(CGContextRef context);

} // namespace wakeloft
