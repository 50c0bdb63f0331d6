#include "GlyphImage.h"

#include "QtGlyphCanvas.h"

#include <QPainter>
#include <QtMath>

#include <utility>

namespace wakeloft {

QImage drawnImage(const TemplateImage& image, const QColor& color, qreal devicePixelRatio) {
    if (image.isEmpty())
        return {};
    QImage drawn(qCeil(image.width * devicePixelRatio), qCeil(image.height * devicePixelRatio),
                 QImage::Format_ARGB32_Premultiplied);
    drawn.fill(Qt::transparent);
    {
        QtGlyphCanvas canvas(drawn, color, devicePixelRatio);
        image.draw(canvas, devicePixelRatio);
    }
    drawn.setDevicePixelRatio(devicePixelRatio);
    return drawn;
}

void paintImage(QPainter& painter, const TemplateImage& image, QPointF topLeft, const QColor& color) {
    const QTransform toDevice = painter.deviceTransform();
    if (image.isEmpty() || !(toDevice.m11() > 0))
        return;
    const QPointF onPixel = toDevice.inverted().map(QPointF(toDevice.map(topLeft).toPoint()));
    painter.drawImage(onPixel, drawnImage(image, color, toDevice.m11()));
}

GlyphImage::GlyphImage(TemplateImage image, QWidget* parent) : QWidget(parent), image_(std::move(image)) {
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

void GlyphImage::setImage(TemplateImage image) {
    const QSize before = sizeHint();
    image_ = std::move(image);
    if (sizeHint() != before)
        updateGeometry();
    update();
}

QSize GlyphImage::sizeHint() const {
    return {qCeil(image_.width), qCeil(image_.height)};
}

void GlyphImage::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    paintImage(painter, image_, QPointF(width() - image_.width, height() - image_.height) / 2,
               palette().color(foregroundRole()));
}

} // namespace wakeloft
