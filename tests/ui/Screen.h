#pragma once

#include "support/Shell.h"
#include "ui/AccessibleTree.h"

#include <cstdio>
#include <optional>
#include <string>

/// The pointer, the keyboard and the picture of the display that the tests were given, through the X server.
namespace wakeloft::screen {

/// Where the tray's icons are, a visible window of this class; nothing while there is none.
inline std::optional<ScreenArea> trayIcons(const std::string& windowClass = "wrapper-2.0") {
    constexpr int oneIcon = 22; // less is the bare tray
    const auto said = outputOf(
        "xdotool search --onlyvisible --class '^" + windowClass + "$' getwindowgeometry --shell", true);
    const auto begin = said.rfind("X=");
    ScreenArea area;
    if (begin == std::string::npos || std::sscanf(said.c_str() + begin, "X=%d Y=%d WIDTH=%d HEIGHT=%d",
                                                  &area.x, &area.y, &area.width, &area.height) != 4)
        return std::nullopt;
    return area.width >= oneIcon ? std::optional(area) : std::nullopt;
}

inline void movePointer(int x, int y) {
    outputOf("xdotool mousemove " + std::to_string(x) + " " + std::to_string(y));
}

/// In the area's middle; the right button is 3.
inline void click(const ScreenArea& area, int button = 1) {
    movePointer(area.x + area.width / 2, area.y + area.height / 2);
    outputOf("xdotool sleep 0.03 click " + std::to_string(button));
}

/// Keys as xdotool names them, one after the other: "Tab Return".
inline void type(const std::string& keys) {
    outputOf("xdotool key " + keys);
}

/// Every pixel's colours in a row.
inline std::string pixels(const ScreenArea& area) {
    const auto size = std::to_string(area.width) + "x" + std::to_string(area.height);
    const auto place = "+" + std::to_string(area.x) + "+" + std::to_string(area.y);
    return outputOf("import -silent -window root -crop " + size + place + " +repage rgb:-");
}

/// Saves the screen as a PNG.
inline void save(const std::string& path) {
    outputOf("import -silent -window root '" + path + "'");
}

} // namespace wakeloft::screen
