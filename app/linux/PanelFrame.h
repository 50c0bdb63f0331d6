#pragma once

#include <QMargins>
#include <QPalette>

class QPainter;
class QRect;

namespace wakeloft {

/// The frameless panel's background and edge.
namespace panelFrame {

constexpr int radius = 12;
constexpr QMargins margins(20, 16, 20, 24);

/// For a translucent window: rounded, on a soft shadow that fills `margins`.
void paint(QPainter& painter, const QRect& window, const QPalette& palette);

/// Without a compositor: a square with a thin border.
void paintSquare(QPainter& painter, const QRect& window, const QPalette& palette);

} // namespace panelFrame

} // namespace wakeloft
