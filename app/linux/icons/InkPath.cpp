#include "InkPath.h"

#include <QPainterPathStroker>
#include <QTransform>

#include <utility>

namespace wakeloft {

namespace {

/// Qt's set operations turn curves into lines that are off by up to a quarter of a unit; so they get large
/// ones.
constexpr double magnification = 6;

QPointF at(GlyphPoint point) {
    return QPointF(point.x, point.y) * magnification;
}

} // namespace

QPainterPath InkPath::path() const {
    return QTransform::fromScale(1 / magnification, 1 / magnification).map(ink_);
}

void InkPath::moveTo(GlyphPoint to) {
    current_.moveTo(at(to));
}

void InkPath::lineTo(GlyphPoint to) {
    current_.lineTo(at(to));
}

void InkPath::curveTo(GlyphPoint control1, GlyphPoint control2, GlyphPoint to) {
    current_.cubicTo(at(control1), at(control2), at(to));
}

void InkPath::closePath() {
    current_.closeSubpath();
}

void InkPath::ellipse(GlyphBox box) {
    current_.addEllipse(QRectF(at({box.x, box.y}), at({box.right(), box.bottom()})));
}

void InkPath::stroke(double width) {
    QPainterPathStroker stroker;
    stroker.setWidth(width * magnification);
    stroker.setCapStyle(Qt::RoundCap);
    stroker.setJoinStyle(Qt::RoundJoin);
    add(stroker.createStroke(takeCurrent()));
}

void InkPath::fill() {
    add(takeCurrent());
}

void InkPath::clear() {
    ink_ = ink_.subtracted(takeCurrent());
}

void InkPath::add(const QPainterPath& shape) {
    ink_ = ink_.isEmpty() ? shape : ink_.united(shape);
}

QPainterPath InkPath::takeCurrent() {
    current_.setFillRule(Qt::WindingFill);
    return std::exchange(current_, {});
}

} // namespace wakeloft
