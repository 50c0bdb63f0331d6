#pragma once

#include <cstdint>
#include <vector>

namespace wakeloft {

/// How much of a square icon macOS has the drawing's tile fill; the rest around it stays empty.
constexpr double appIconTileShare = 103.0 / 128;

/// The app's icon in a square of `side` pixels: red, green, blue and opacity of each, row by row from the
/// top. Colours are not multiplied by the opacity.
std::vector<std::uint8_t> appIconPicture(int side);

} // namespace wakeloft
