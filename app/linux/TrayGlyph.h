#pragma once

#include "status/MenuBarIcon.h"

#include <QColor>
#include <QImage>

#include <string>
#include <vector>

namespace wakeloft {

struct TrayPixmap;

/// For hosts that do not recolour: at least 4:1 on white and on black.
constexpr QRgb trayGlyphColor = 0xff7a7a7a;

/// The icon, `size` by `size` pixels, transparent around.
QImage trayImage(const MenuBarIcon& icon, LayoutDirection direction, int size, const QColor& color);

/// The icon at the sizes that tray hosts use, each drawn for its own pixels.
std::vector<TrayPixmap> trayPixmaps(const MenuBarIcon& icon, LayoutDirection direction,
                                    const QColor& color = QColor::fromRgb(trayGlyphColor));

/// The folder of icon themes beside the running program, where the files of `trayIconName` are; empty when
/// it is not there, so that hosts must draw the pixmaps.
std::string trayIconFolder();

} // namespace wakeloft
