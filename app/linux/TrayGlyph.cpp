#include "TrayGlyph.h"

#include "StatusNotifierItem.h"

#include <QImage>
#include <QPainter>
#include <QPainterPath>

#include <algorithm>
#include <cmath>

namespace wakeloft {

namespace {

/// A 16 by 16 design, brought to whole pixels of the real size.
struct Grid {
    int size = 16;

    [[nodiscard]] qreal at(qreal unit) const { return std::round(unit * size / 16); }
    [[nodiscard]] QRectF box(qreal left, qreal top, qreal right, qreal bottom) const {
        return {QPointF(at(left), at(top)), QPointF(at(right), at(bottom))};
    }
    [[nodiscard]] qreal stroke() const { return std::max(1.0, std::round(size / 12.0 * 2) / 2); }
};

QPainterPath vessel(const QRectF& box, qreal topRadius, qreal bottomRadius) {
    QPainterPath path;
    path.moveTo(box.left() + topRadius, box.top());
    path.lineTo(box.right() - topRadius, box.top());
    path.arcTo(box.right() - 2 * topRadius, box.top(), 2 * topRadius, 2 * topRadius, 90, -90);
    path.lineTo(box.right(), box.bottom() - bottomRadius);
    path.arcTo(box.right() - 2 * bottomRadius, box.bottom() - 2 * bottomRadius, 2 * bottomRadius,
               2 * bottomRadius, 0, -90);
    path.lineTo(box.left() + bottomRadius, box.bottom());
    path.arcTo(box.left(), box.bottom() - 2 * bottomRadius, 2 * bottomRadius, 2 * bottomRadius, 270, -90);
    path.lineTo(box.left(), box.top() + topRadius);
    path.arcTo(box.left(), box.top(), 2 * topRadius, 2 * topRadius, 180, -90);
    path.closeSubpath();
    return path;
}

QRectF inset(const QRectF& box, qreal by) {
    return box.adjusted(by, by, -by, -by);
}

struct Mug {
    QPainterPath ink;
    QPainterPath silhouette;
};

/// `handleLeft` is where the handle begins; it is drawn at the left, so that a badge at the lower right
/// leaves it whole.
Mug mug(const Grid& grid, const QRectF& body, qreal handleLeft, bool isFilled) {
    const qreal stroke = grid.stroke();
    const qreal topRadius = grid.size / 16.0;
    const qreal bottomRadius = grid.size * 3 / 16.0;
    const QPainterPath outside = vessel(body, topRadius, bottomRadius);
    const QPainterPath inside = vessel(inset(body, stroke), std::max(0.5, topRadius - stroke / 2),
                                       std::max(0.5, bottomRadius - stroke));

    const qreal handleTop = body.top() + std::round(body.height() * 0.18);
    const qreal handleBottom = body.top() + std::round(body.height() * 0.72);
    const QRectF handle(QPointF(handleLeft, handleTop), QPointF(body.left() + bottomRadius, handleBottom));
    const qreal handleRadius = handle.height() / 2;
    QPainterPath ring;
    ring.addRoundedRect(handle, handleRadius, handleRadius);
    QPainterPath hole;
    hole.addRoundedRect(inset(handle, stroke), handleRadius - stroke, handleRadius - stroke);

    return {
        (isFilled ? outside : outside.subtracted(inside)).united(ring.subtracted(hole).subtracted(outside)),
        outside.united(ring)};
}

QPainterPath grown(const QPainterPath& path, qreal by) {
    QPainterPathStroker stroker;
    stroker.setWidth(2 * by);
    stroker.setJoinStyle(Qt::RoundJoin);
    return stroker.createStroke(path).united(path);
}

QPainterPath ellipse(const QRectF& box) {
    QPainterPath path;
    path.addEllipse(box);
    return path;
}

/// A disc with the hands cut out.
QPainterPath clock(const Grid& grid, const QRectF& box) {
    const qreal hand = std::max(1.0, std::round(grid.size / 16.0));
    const qreal x = std::floor(box.center().x() - hand / 2);
    const qreal y = std::floor(box.center().y() - hand / 2);
    const qreal length = std::round(box.height() * 0.32);
    QPainterPath hands;
    hands.addRect(x, y - length, hand, length + hand);
    QPainterPath shortHand;
    shortHand.addRect(x, y, std::round(box.width() * 0.26) + hand, hand);
    return ellipse(box).subtracted(hands.united(shortHand));
}

QPainterPath glyph(const Grid& grid, const MenuBarIcon& icon) {
    const qreal gap = std::max(1.0, std::round(grid.size / 20.0));
    QPainterPath ink;
    if (icon.keepsLidClosedAwake) {
        const Mug front = mug(grid, grid.box(4, 5, 12, 14), grid.at(1), icon.isOn);
        const QPainterPath behind = mug(grid, grid.box(7, 2, 15, 11), grid.at(7), icon.isOn).ink;
        ink = behind.subtracted(grown(front.silhouette, gap)).united(front.ink);
    } else if (icon.showsTimerBadge) {
        ink = mug(grid, grid.box(5, 2, 14, 12), grid.at(1), icon.isOn).ink;
    } else {
        ink = mug(grid, grid.box(5, 3, 15, 13), grid.at(1), icon.isOn).ink;
    }
    if (icon.showsTimerBadge) {
        const QRectF badge = grid.box(9, 9, 16, 16);
        ink = ink.subtracted(ellipse(badge.adjusted(-gap, -gap, gap, gap))).united(clock(grid, badge));
    }
    return ink;
}

TrayPixmap pixmapOf(const QImage& image) {
    TrayPixmap pixmap{image.width(), image.height(), {}};
    pixmap.bytes.reserve(static_cast<size_t>(image.sizeInBytes()));
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x) {
            const QColor pixel = image.pixelColor(x, y);
            for (const int channel : {pixel.alpha(), pixel.red(), pixel.green(), pixel.blue()})
                pixmap.bytes.push_back(static_cast<std::uint8_t>(channel));
        }
    return pixmap;
}

} // namespace

void paintGlyph(QPainter& painter, const QRectF& box, const MenuBarIcon& icon, const QColor& color) {
    const QPointF origin = painter.deviceTransform().map(box.topLeft());
    const qreal scale = painter.deviceTransform().m11();
    const Grid grid{qRound(std::min(box.width(), box.height()) * scale)};
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.translate(box.topLeft());
    painter.scale(1 / scale, 1 / scale);
    painter.translate(std::round(origin.x()) - origin.x(), std::round(origin.y()) - origin.y());
    painter.fillPath(glyph(grid, icon), color);
    painter.restore();
}

std::vector<TrayPixmap> trayPixmaps(const MenuBarIcon& icon, const QColor& color) {
    std::vector<TrayPixmap> pixmaps;
    for (const int size : {16, 22, 24, 32, 48}) {
        QImage image(size, size, QImage::Format_ARGB32_Premultiplied);
        image.fill(Qt::transparent);
        QPainter painter(&image);
        paintGlyph(painter, QRectF(0, 0, size, size), icon, color);
        painter.end();
        pixmaps.push_back(pixmapOf(image));
    }
    return pixmaps;
}

} // namespace wakeloft
