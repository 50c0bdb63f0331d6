#pragma once

#include "status/GlyphCanvas.h"

#include <QBrush>
#include <QPainter>
#include <QPainterPath>

namespace wakeloft {

/// Draws a glyph into a picture that is transparent at first, so that `clear` leaves it so.
class QtGlyphCanvas : public GlyphCanvas {
  public:
    /// `scale`: pixels a point.
    QtGlyphCanvas(QPaintDevice& picture, const QBrush& ink, double scale);

    void moveTo(GlyphPoint to) override;
    void lineTo(GlyphPoint to) override;
    void curveTo(GlyphPoint control1, GlyphPoint control2, GlyphPoint to) override;
    void closePath() override;
    void ellipse(GlyphBox box) override;
    void stroke(double width) override;
    void fill() override;
    void clear() override;

  private:
    QPainterPath takePath();

    QPainter painter_;
    QBrush ink_;
    QPainterPath path_;
};

} // namespace wakeloft
