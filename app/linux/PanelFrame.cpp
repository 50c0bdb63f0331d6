#include "PanelFrame.h"

#include "Theme.h"

#include <QPainter>

namespace wakeloft::panelFrame {

namespace {

constexpr int reach = 20; // of the shadow, around the panel
constexpr int drop = 4;   // its shift downwards

/// Rounded rectangles that grow outwards, each adding a little: together a soft falloff.
void paintShadow(QPainter& painter, const QRectF& panel, bool isDark) {
    painter.setPen(Qt::NoPen);
    const qreal strength = isDark ? 14 : 7;
    for (int distance = reach; distance > 0; --distance) {
        const qreal nearness = 1 - static_cast<qreal>(distance) / reach;
        painter.setBrush(QColor(0, 0, 0, qRound(strength * nearness * nearness)));
        painter.drawRoundedRect(panel.adjusted(-distance, drop - distance, distance, drop + distance),
                                radius + distance, radius + distance);
    }
    painter.setBrush(
        QColor(0, 0, 0, isDark ? 90 : 34)); // the contact shadow keeps the edge crisp on any ground
    painter.drawRoundedRect(panel.adjusted(-1, -0.5, 1, 1.5), radius + 1, radius + 1);
}

} // namespace

void paint(QPainter& painter, const QRect& window, const QPalette& palette) {
    const QRectF panel = window.marginsRemoved(margins);
    const QColor background = palette.color(role::background);
    const bool isDark = background.lightness() < 128;
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setCompositionMode(QPainter::CompositionMode_Source);
    painter.fillRect(window, Qt::transparent);
    painter.setCompositionMode(QPainter::CompositionMode_SourceOver);
    paintShadow(painter, panel, isDark);
    painter.setBrush(background);
    // On a light panel the shadow alone is the edge.
    painter.setPen(isDark ? QPen(palette.color(role::border), 1) : QPen(background, 1));
    painter.drawRoundedRect(panel.adjusted(0.5, 0.5, -0.5, -0.5), radius - 0.5, radius - 0.5);
}

void paintSquare(QPainter& painter, const QRect& window, const QPalette& palette) {
    painter.fillRect(window, palette.color(role::border));
    painter.fillRect(window.adjusted(1, 1, -1, -1), palette.color(role::background));
}

} // namespace wakeloft::panelFrame
