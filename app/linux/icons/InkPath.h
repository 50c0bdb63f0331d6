#pragma once

#include "status/GlyphCanvas.h"

#include <QPainterPath>

namespace wakeloft {

/// Gathers a glyph's ink as one filled path, as icon files need it: hosts recolour fills, and know neither
/// strokes nor ways to take ink away. Slow.
class InkPath : public GlyphCanvas {
  public:
    [[nodiscard]] QPainterPath path() const;

    void moveTo(GlyphPoint to) override;
    void lineTo(GlyphPoint to) override;
    void curveTo(GlyphPoint control1, GlyphPoint control2, GlyphPoint to) override;
    void closePath() override;
    void ellipse(GlyphBox box) override;
    void stroke(double width) override;
    void fill() override;
    void clear() override;

  private:
    void add(const QPainterPath& shape);
    QPainterPath takeCurrent();

    QPainterPath current_;
    QPainterPath ink_;
};

} // namespace wakeloft
