#pragma once

#include "status/TemplateImage.h"

#include <optional>
#include <string_view>

namespace wakeloft {

/// The small pictures beside texts, in the hand of the status glyph.
enum class Symbol {
    checkmark,
    chevronDown,
    clockFill,
    exclamationmarkTriangleFill,
    gearshape,
    infoCircle,
    mug,
    mugFill,
    star,
    starFill,
    thermometerHigh
};

/// "clock.fill": the name by which panel content speaks of it.
std::string_view symbolName(Symbol symbol);
std::optional<Symbol> symbolNamed(std::string_view name);

/// Square, with sides of `side` points. Empty when that is zero or less.
TemplateImage symbolImage(Symbol symbol, double side);

/// Draws into `box`, which is square and should lie on pixels.
void drawSymbol(Symbol symbol, GlyphCanvas& canvas, GlyphBox box, double deviceScale);

} // namespace wakeloft
