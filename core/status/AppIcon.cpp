#include "status/AppIcon.h"

#include "status/GlyphShapes.h"
#include "status/LaptopGlyph.h"

#include <cmath>
#include <numbers>

namespace wakeloft {

namespace {

void addRay(GlyphCanvas& canvas, GlyphPoint sun, double angle) {
    const auto at = [&](double radius) {
        return GlyphPoint{sun.x - radius * std::cos(angle), sun.y - radius * std::sin(angle)};
    };
    canvas.moveTo(at(22));
    canvas.lineTo(at(28));
    canvas.stroke(4.5);
}

} // namespace

std::vector<AppIconLayer> appIconLayers() {
    constexpr GlyphBox night{8, 8, 112, 112};
    constexpr double unit = 38;
    constexpr double left = 64 - (LaptopGlyph::inkRightEdge + LaptopGlyph::outline) / 2 * unit;
    constexpr double glyphTop = 111 - LaptopGlyph::boxHeight * unit;
    constexpr GlyphPoint sun{left + LaptopGlyph::laptopMiddle * unit, glyphTop + 3};
    constexpr GlyphBox glyph{left, glyphTop, LaptopGlyph::boxWidth() * unit, LaptopGlyph::boxHeight * unit};
    return {
        {0x46589F, 0x1A2049, night.y, night.bottom(),
         [=](GlyphCanvas& canvas) {
             addBox(canvas, night, 26, 26);
             canvas.fill();
         }},
        {0xFFD978, 0xFF8F3F, sun.y - 26, sun.y,
         [=](GlyphCanvas& canvas) {
             canvas.ellipse({sun.x - 16, sun.y - 16, 32, 32});
             canvas.fill();
             for (int ray = 1; ray <= 5; ++ray)
                 addRay(canvas, sun, ray * std::numbers::pi / 6);
         }},
        {0xFFFFFF, 0xC7D3F2, glyph.y, glyph.bottom(),
         [=](GlyphCanvas& canvas) { LaptopGlyph::draw(true, glyph, LaptopGlyph::Detail::full, 1, canvas); }},
    };
}

} // namespace wakeloft
