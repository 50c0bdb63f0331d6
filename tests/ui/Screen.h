#pragma once

#include "ui/AccessibleTree.h"

#include <optional>
#include <string>

namespace wakeloft {

/// Looks until `condition` holds, at most `timeoutMs`. Returns whether it came to hold.
bool comesTrue(const std::function<bool()>& condition, int timeoutMs = 10'000);

/// The pointer, the keyboard and the picture of the display that the tests were given, through the X server.
namespace screen {

/// There is a display, and a panel that shows the tray's icons on it.
bool hasTray();
/// Where the tray's icons are, a visible window of this class; nothing while there is none.
std::optional<ScreenArea> trayIcons(const std::string& windowClass = "wrapper-2.0");

void movePointer(int x, int y);
void click(int x, int y);
void click(const ScreenArea& area);
void rightClick(const ScreenArea& area);
/// Keys as xdotool names them, one after the other: "Tab Return".
void type(const std::string& keys);

/// Every pixel's colours in a row.
std::string pixels(const ScreenArea& area);
/// Saves the screen, or an area of it, as a PNG.
void save(const std::string& path, const std::optional<ScreenArea>& area = {});

} // namespace screen

} // namespace wakeloft
