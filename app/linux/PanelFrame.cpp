#include "PanelFrame.h"

#include "Theme.h"

#include <QPainter>
#include <QPixmapCache>
#include <qdrawutil.h>

#include <algorithm>
#include <cmath>

namespace wakeloft::panelFrame {

namespace {

constexpr int reach = 20; // of the shadow, around the panel
constexpr int drop = 4;   // its shift downwards

/// How far a point lies outside a rounded rectangle; 0 inside.
qreal distanceOutside(QPointF point, const QRectF& rectangle, qreal cornerRadius) {
    const QPointF fromCenter = point - rectangle.center();
    const qreal x = std::abs(fromCenter.x()) - rectangle.width() / 2 + cornerRadius;
    const qreal y = std::abs(fromCenter.y()) - rectangle.height() / 2 + cornerRadius;
    return std::max(0.0, std::hypot(std::max(0.0, x), std::max(0.0, y)) - cornerRadius);
}

/// Black that fades outwards, point by point: a blur, or many translucent layers, would take longer than all
/// the rest of the panel.
QImage softShadow(QSize window, const QRectF& panel, bool isDark, qreal ratio) {
    const QRectF caster = panel.translated(0, drop);
    const qreal strongest = isDark ? 93 : 47;
    QImage image((QSizeF(window) * ratio).toSize(), QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(ratio);
    for (int y = 0; y < image.height(); ++y) {
        auto* line = reinterpret_cast<QRgb*>(image.scanLine(y));
        for (int x = 0; x < image.width(); ++x) {
            const QPointF point = QPointF(x + 0.5, y + 0.5) / ratio;
            const qreal nearness = 1 - std::min(1.0, distanceOutside(point, caster, radius) / reach);
            line[x] = qRgba(0, 0, 0, qRound(strongest * nearness * nearness * nearness));
        }
    }
    return image;
}

void paintWhole(QPainter& painter, const QRect& window, const QPalette& palette) {
    const QRectF panel = window.marginsRemoved(margins);
    const QColor background = palette.color(role::background);
    const bool isDark = background.lightness() < 128;
    painter.setCompositionMode(QPainter::CompositionMode_Source); // the surface may hold anything
    painter.drawImage(window.topLeft(),
                      softShadow(window.size(), panel, isDark, painter.device()->devicePixelRatio()));
    painter.setCompositionMode(QPainter::CompositionMode_SourceOver);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(QColor(0, 0, 0, isDark ? 90 : 34)); // keeps the edge crisp on any ground
    painter.drawRoundedRect(panel.adjusted(-1, -0.5, 1, 1.5), radius + 1, radius + 1);
    painter.setBrush(background);
    // On a light panel the shadow alone is the edge.
    painter.setPen(isDark ? QPen(palette.color(role::border), 1) : QPen(background, 1));
    painter.drawRoundedRect(panel.adjusted(0.5, 0.5, -0.5, -0.5), radius - 0.5, radius - 0.5);
}

/// The corners of any panel, and one pixel between them to be drawn out.
QPixmap cornersOf(const QMargins& edges, qreal ratio, const QPalette& palette) {
    const QString key =
        QStringLiteral("panel %1 %2").arg(ratio).arg(palette.color(role::background).rgba(), 0, 16);
    QPixmap corners;
    if (QPixmapCache::find(key, &corners))
        return corners;
    const QRect small(0, 0, edges.left() + 1 + edges.right(), edges.top() + 1 + edges.bottom());
    corners = QPixmap(small.size() * ratio);
    corners.setDevicePixelRatio(ratio);
    corners.fill(Qt::transparent); // gives it an alpha channel
    {
        QPainter painter(&corners);
        paintWhole(painter, small, palette);
    }
    QPixmapCache::insert(key, corners);
    return corners;
}

} // namespace

void paint(QPainter& painter, const QRect& window, const QPalette& palette) {
    const qreal ratio = painter.device()->devicePixelRatio();
    if (ratio != std::floor(ratio)) {
        paintWhole(painter, window, palette); // pieces would not meet on whole pixels
        return;
    }
    const QMargins edges = margins + (radius + reach);
    const QPixmap corners = cornersOf(edges, ratio, palette);
    painter.setCompositionMode(QPainter::CompositionMode_Source);
    qDrawBorderPixmap(&painter, window, edges, corners, QRect(QPoint(), corners.size()), edges * ratio);
    painter.setCompositionMode(QPainter::CompositionMode_SourceOver);
}

void paintSquare(QPainter& painter, const QRect& window, const QPalette& palette) {
    painter.fillRect(window, palette.color(role::border));
    painter.fillRect(window.adjusted(1, 1, -1, -1), palette.color(role::background));
}

} // namespace wakeloft::panelFrame
