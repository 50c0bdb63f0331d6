#pragma once

#include "status/MenuBarIcon.h"

#include <QColor>

#include <vector>

class QPainter;
class QRectF;

namespace wakeloft {

struct TrayPixmap;

/// For hosts that do not recolour: at least 4.3:1 on white and on black.
constexpr QRgb trayGlyphColor = 0xff7a7a7a;

/// Draws the mug into the square at the top left of `box`: an outline when off, filled when on, with a clock
/// at its side while a timer runs, a second mug behind it while it works with the lid closed. Edges lie on
/// device pixels.
void paintGlyph(QPainter& painter, const QRectF& box, const MenuBarIcon& icon, const QColor& color);

/// The glyph at the sizes that tray hosts use, each drawn for its own pixels.
std::vector<TrayPixmap> trayPixmaps(const MenuBarIcon& icon,
                                    const QColor& color = QColor::fromRgb(trayGlyphColor));

} // namespace wakeloft
