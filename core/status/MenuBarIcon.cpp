#include "status/MenuBarIcon.h"

#include "status/LaptopGlyph.h"
#include "status/Symbol.h"

#include <cmath>

namespace wakeloft {

namespace {

constexpr double doubleMugSize = 15;
constexpr double laptopGlyphHeight = 14;
constexpr double badgedHeight = 18;
constexpr double badgeSide = 9; ///< as a symbol of 8 points of type is wide

TemplateImage menuBarImage(AwakeGlyph glyph) {
    if (glyph.vessel == AwakeGlyph::Vessel::doubleMug)
        return glyph.image(doubleMugSize);
    const GlyphBox box{0, 0, std::round(LaptopGlyph::aspect() * laptopGlyphHeight), laptopGlyphHeight};
    return {box.width, box.height,
            [glyph, box](GlyphCanvas& canvas, double deviceScale) { glyph.draw(canvas, box, deviceScale); }};
}

} // namespace

MenuBarIcon MenuBarIcon::current(bool isOn, std::optional<Date> activeUntil, bool lidClosed) {
    if (!isOn)
        return {};
    return {.isOn = true, .showsTimerBadge = activeUntil.has_value(), .keepsLidClosedAwake = lidClosed};
}

MenuBarIcon::SpokenLabel MenuBarIcon::spokenLabel() const {
    if (!isOn)
        return SpokenLabel::off;
    if (keepsLidClosedAwake)
        return showsTimerBadge ? SpokenLabel::onWithLidClosedAndTimerRunning : SpokenLabel::onWithLidClosed;
    return showsTimerBadge ? SpokenLabel::onWithTimerRunning : SpokenLabel::on;
}

AwakeGlyph MenuBarIcon::glyph() const {
    return {keepsLidClosedAwake ? AwakeGlyph::Vessel::doubleMug : AwakeGlyph::Vessel::mugOnLaptop, isOn};
}

TemplateImage MenuBarIcon::image(LayoutDirection direction) const {
    TemplateImage plain = menuBarImage(glyph());
    if (plain.isEmpty() || !showsTimerBadge)
        return plain;
    const double overlap = keepsLidClosedAwake ? 3 : 2;
    const double width = std::round(plain.width + badgeSide - overlap);
    const bool isMirrored = direction == LayoutDirection::rightToLeft;
    const double glyphX = isMirrored ? width - plain.width : 0;
    const double glyphY = std::floor((badgedHeight - plain.height) / 2);
    const GlyphBox glyphBox{glyphX, glyphY, plain.width, plain.height};
    const GlyphBox badge{isMirrored ? 0 : width - badgeSide, badgedHeight - badgeSide, badgeSide, badgeSide};
    return {width, badgedHeight, [glyph = glyph(), glyphBox, badge](GlyphCanvas& canvas, double deviceScale) {
                glyph.draw(canvas, glyphBox, deviceScale);
                canvas.ellipse(badge.insetBy(-1));
                canvas.clear();
                drawSymbol(Symbol::clockFill, canvas, badge, deviceScale);
            }};
}

} // namespace wakeloft
