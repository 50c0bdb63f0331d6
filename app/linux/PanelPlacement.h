#pragma once

#include <QPoint>
#include <QRect>
#include <QSize>

#include <optional>

namespace wakeloft {

/// A screen, in logical pixels: all of it, and what its bars leave free (the same where that is not known).
struct ScreenArea {
    QRect whole;
    QRect available;
};

/// Which of both points to trust. Hosts that embed the item's window report a place relative to it, so a
/// pointer that is at an edge of the screen, where bars are, and far from `told` wins. `pointer` is empty
/// where it is unknown.
QPoint trustedAnchor(QPoint told, std::optional<QPoint> pointer, const QRect& screen);

/// Where the panel's top left goes: beside the bar that holds `anchor`, centred on it, and inside the screen.
QPoint panelPosition(QSize panel, QPoint anchor, const ScreenArea& screen);

/// A point in device pixels, as X11 tells it, in Qt's logical pixels.
QPoint logicalPoint(QPoint native, const QRect& screen, qreal devicePixelRatio);

} // namespace wakeloft
