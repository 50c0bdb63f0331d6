#include "status/Symbol.h"

#include <algorithm>
#include <array>
#include <utility>

namespace wakeloft {

namespace {

constexpr std::array<std::pair<Symbol, std::string_view>, 11> names{{
    {Symbol::checkmark, "checkmark"},
    {Symbol::chevronDown, "chevron.down"},
    {Symbol::clockFill, "clock.fill"},
    {Symbol::exclamationmarkTriangleFill, "exclamationmark.triangle.fill"},
    {Symbol::gearshape, "gearshape"},
    {Symbol::infoCircle, "info.circle"},
    {Symbol::mug, "mug"},
    {Symbol::mugFill, "mug.fill"},
    {Symbol::star, "star"},
    {Symbol::starFill, "star.fill"},
    {Symbol::thermometerHigh, "thermometer.high"},
}};

} // namespace

std::string_view symbolName(Symbol symbol) {
    const auto* found = std::ranges::find(names, symbol, &decltype(names)::value_type::first);
    return found != names.end() ? found->second : std::string_view();
}

std::optional<Symbol> symbolNamed(std::string_view name) {
    const auto* found = std::ranges::find(names, name, &decltype(names)::value_type::second);
    return found != names.end() ? std::optional(found->first) : std::nullopt;
}

TemplateImage symbolImage(Symbol symbol, double side) {
    if (!(side > 0))
        return {};
    return {side, side, [symbol, side](GlyphCanvas& canvas, double deviceScale) {
                drawSymbol(symbol, canvas, {0, 0, side, side}, deviceScale);
            }};
}

} // namespace wakeloft
