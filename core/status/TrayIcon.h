#pragma once

#include "status/GlyphCanvas.h"
#include "status/MenuBarIcon.h"
#include "support/LayoutDirection.h"

#include <string>

namespace wakeloft {

/// Draws the icon for trays that want a square picture: `size` by `size` pixels, one a point, from the
/// canvas's origin. The badge lies over the lower corner, at the end of the line.
void drawTrayIcon(const MenuBarIcon& icon, LayoutDirection direction, int size, GlyphCanvas& canvas);

/// The installed file with that drawing, which hosts bring to their panel's colour.
std::string trayIconName(const MenuBarIcon& icon, LayoutDirection direction);

} // namespace wakeloft
