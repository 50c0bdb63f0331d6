#include "AppIconPicture.h"

#include "PixelCanvas.h"
#include "status/AppIcon.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace wakeloft {

namespace {

constexpr double tileSide = 112; // of the drawing

double channel(std::uint32_t color, unsigned shift) {
    return (color >> shift) & 0xFF;
}

std::uint8_t rounded(double value) {
    return static_cast<std::uint8_t>(std::lround(std::clamp(value, 0.0, 255.0)));
}

} // namespace

std::vector<std::uint8_t> appIconPicture(int side) {
    const double scale = side * appIconTileShare / tileSide;
    const double inset = (side - appIconSide * scale) / 2;
    struct Pixel {
        std::array<double, 3> color{}; ///< multiplied by the opacity
        double opacity = 0;
    };
    std::vector<Pixel> pixels(static_cast<std::size_t>(side) * static_cast<std::size_t>(side));
    for (const AppIconLayer& layer : appIconLayers()) {
        PixelCanvas canvas(side, scale, inset);
        layer.draw(canvas);
        for (std::size_t i = 0; i < pixels.size(); ++i) {
            const double ink = canvas.ink()[i];
            const auto row = i / static_cast<std::size_t>(side);
            const double y = (static_cast<double>(row) + 0.5 - inset) / scale;
            const double down = std::clamp((y - layer.top) / (layer.bottom - layer.top), 0.0, 1.0);
            for (unsigned each = 0; each < 3; ++each) {
                const unsigned shift = 16 - 8 * each;
                const double color =
                    channel(layer.topColor, shift) * (1 - down) + channel(layer.bottomColor, shift) * down;
                pixels[i].color[each] = color * ink + pixels[i].color[each] * (1 - ink);
            }
            pixels[i].opacity = ink + pixels[i].opacity * (1 - ink);
        }
    }
    std::vector<std::uint8_t> bytes;
    bytes.reserve(pixels.size() * 4);
    for (const Pixel& pixel : pixels) {
        for (const double color : pixel.color)
            bytes.push_back(pixel.opacity > 0 ? rounded(color / pixel.opacity) : 0);
        bytes.push_back(rounded(pixel.opacity * 255));
    }
    return bytes;
}

} // namespace wakeloft
