#pragma once

#include "status/GlyphCanvas.h"

#include <cstdint>
#include <functional>
#include <vector>

namespace wakeloft {

/// The application's icon, in colour: layers from back to front, on a square with sides of `appIconSide`.
struct AppIconLayer {
    std::uint32_t topColor = 0; ///< 0xRRGGBB at `top`, from where it turns into the other one
    std::uint32_t bottomColor = 0;
    double top = 0;
    double bottom = 0;
    std::function<void(GlyphCanvas&)> draw;
};

constexpr double appIconSide = 128;
std::vector<AppIconLayer> appIconLayers();

} // namespace wakeloft
