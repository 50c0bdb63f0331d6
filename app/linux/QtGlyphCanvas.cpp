#include "QtGlyphCanvas.h"

#include <QPainterPathStroker>
#include <QPen>

#include <utility>

namespace wakeloft {

QtGlyphCanvas::QtGlyphCanvas(QPaintDevice& picture, const QBrush& ink, double scale)
    : painter_(&picture), ink_(ink) {
    painter_.setRenderHint(QPainter::Antialiasing);
    painter_.scale(scale, scale);
}

void QtGlyphCanvas::moveTo(GlyphPoint to) {
    path_.moveTo(to.x, to.y);
}

void QtGlyphCanvas::lineTo(GlyphPoint to) {
    path_.lineTo(to.x, to.y);
}

void QtGlyphCanvas::curveTo(GlyphPoint control1, GlyphPoint control2, GlyphPoint to) {
    path_.cubicTo(control1.x, control1.y, control2.x, control2.y, to.x, to.y);
}

void QtGlyphCanvas::closePath() {
    path_.closeSubpath();
}

void QtGlyphCanvas::ellipse(GlyphBox box) {
    path_.addEllipse(box.x, box.y, box.width, box.height);
}

void QtGlyphCanvas::stroke(double width) {
    // The painter's own lines of up to one pixel are drawn for speed, and unevenly.
    QPainterPathStroker stroker(QPen(ink_, width, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    stroker.setCurveThreshold(0.02);
    painter_.fillPath(stroker.createStroke(takePath()), ink_);
}

void QtGlyphCanvas::fill() {
    painter_.fillPath(takePath(), ink_);
}

void QtGlyphCanvas::clear() {
    painter_.setCompositionMode(QPainter::CompositionMode_DestinationOut);
    painter_.fillPath(takePath(), Qt::black);
    painter_.setCompositionMode(QPainter::CompositionMode_SourceOver);
}

QPainterPath QtGlyphCanvas::takePath() {
    path_.setFillRule(Qt::WindingFill);
    return std::exchange(path_, {});
}

} // namespace wakeloft
