#include "PanelPlacement.h"

#include <algorithm>

namespace wakeloft {

namespace {

constexpr int thickestBar = 72;
constexpr int nearTheAnchor = 64;
constexpr int gapToBar = 6;
constexpr int gapToEdge = 8;

enum class Edge { none, top, bottom, left, right };

int distanceTo(Edge edge, QPoint point, const QRect& screen) {
    switch (edge) {
    case Edge::top:
        return point.y() - screen.top();
    case Edge::bottom:
        return screen.bottom() - point.y();
    case Edge::left:
        return point.x() - screen.left();
    case Edge::right:
        return screen.right() - point.x();
    case Edge::none:
        break;
    }
    return 0;
}

/// The bar's edge. A bar that keeps its space is certain; otherwise horizontal bars are the likelier ones,
/// which matters in the corners.
Edge barEdge(QPoint anchor, const ScreenArea& screen) {
    const QRect& free = screen.available;
    if (anchor.y() < free.top())
        return Edge::top;
    if (anchor.y() > free.bottom())
        return Edge::bottom;
    if (anchor.x() < free.left())
        return Edge::left;
    if (anchor.x() > free.right())
        return Edge::right;
    Edge nearest = Edge::none;
    int distance = thickestBar / 2 + 1;
    for (const auto& pair : {std::pair{Edge::top, Edge::bottom}, std::pair{Edge::left, Edge::right}}) {
        for (const Edge edge : {pair.first, pair.second})
            if (distanceTo(edge, anchor, screen.whole) < distance) {
                nearest = edge;
                distance = distanceTo(edge, anchor, screen.whole);
            }
        if (nearest != Edge::none)
            return nearest;
    }
    return nearest;
}

int clamped(int value, int low, int high) {
    return std::max(low, std::min(value, high)); // too large for the screen: the beginning stays visible
}

} // namespace

QPoint trustedAnchor(QPoint told, std::optional<QPoint> pointer, const QRect& screen) {
    if (!pointer || (told - *pointer).manhattanLength() <= nearTheAnchor)
        return told;
    for (const Edge edge : {Edge::top, Edge::bottom, Edge::left, Edge::right})
        if (distanceTo(edge, *pointer, screen) <= thickestBar)
            return *pointer;
    return told;
}

QPoint panelPosition(QSize panel, QPoint anchor, const ScreenArea& screen) {
    const Edge edge = barEdge(anchor, screen);
    // Where the bar's thickness is unknown: an item sits in its middle.
    const int beyond = 2 * distanceTo(edge, anchor, screen.whole) + gapToBar;
    const QRect& free = screen.available;
    const bool keepsSpace = !free.contains(anchor);
    QPoint position(anchor.x() - panel.width() / 2, anchor.y() - panel.height() / 2);
    switch (edge) {
    case Edge::top:
        position.setY(keepsSpace ? free.top() + gapToBar : screen.whole.top() + beyond);
        break;
    case Edge::bottom:
        position.setY((keepsSpace ? free.bottom() + 1 - gapToBar : screen.whole.bottom() + 1 - beyond) -
                      panel.height());
        break;
    case Edge::left:
        position.setX(keepsSpace ? free.left() + gapToBar : screen.whole.left() + beyond);
        break;
    case Edge::right:
        position.setX((keepsSpace ? free.right() + 1 - gapToBar : screen.whole.right() + 1 - beyond) -
                      panel.width());
        break;
    case Edge::none:
        position.setY(anchor.y() + gapToBar);
        break;
    }
    const bool isHorizontalBar = edge != Edge::left && edge != Edge::right;
    const int marginX = isHorizontalBar ? gapToEdge : 0;
    const int marginY = isHorizontalBar ? 0 : gapToEdge;
    return {clamped(position.x(), free.left() + marginX, free.right() + 1 - marginX - panel.width()),
            clamped(position.y(), free.top() + marginY, free.bottom() + 1 - marginY - panel.height())};
}

QPoint logicalPoint(QPoint native, const QRect& screen, qreal devicePixelRatio) {
    // Qt keeps a screen's origin and scales its size.
    return screen.topLeft() + ((native - screen.topLeft()).toPointF() / devicePixelRatio).toPoint();
}

} // namespace wakeloft
