#include "status/TrayIcon.h"

#include "status/GlyphShapes.h"
#include "status/LaptopGlyph.h"

#include <algorithm>
#include <cmath>

namespace wakeloft {

namespace {

constexpr PixelGrid wholePixels{1};

/// Draws with ink as wide as `area`, in its middle or at its top.
void drawGlyph(AwakeGlyph glyph, GlyphBox area, bool isAtTop, GlyphCanvas& canvas) {
    const auto top = [&](double inkHeight) {
        return area.y + (isAtTop ? 0 : std::floor((area.height - inkHeight) / 2));
    };
    if (glyph.vessel == AwakeGlyph::Vessel::doubleMug) {
        const double height = std::round(area.width / mugPairAspect);
        drawMugPair(canvas, {area.x, top(height), area.width, height}, glyph.isFilled, wholePixels);
        return;
    }
    const double unit = area.width / (LaptopGlyph::inkRightEdge - LaptopGlyph::outline);
    const double inkHeight = std::round(LaptopGlyph::inkHeight * unit);
    const double bottom = top(inkHeight) + inkHeight + LaptopGlyph::margin * unit;
    const double height = LaptopGlyph::boxHeight * unit;
    glyph.draw(
        canvas,
        {area.x - LaptopGlyph::outline * unit, bottom - height, LaptopGlyph::boxWidth() * unit, height}, 1);
}

} // namespace

void drawTrayIcon(const MenuBarIcon& icon, LayoutDirection direction, int size, GlyphCanvas& canvas) {
    const double margin = std::floor(size / 22.0);
    const double free = size - 2 * margin;
    if (!(free > 0))
        return;
    drawGlyph(icon.glyph(), {margin, margin, free, free}, icon.showsTimerBadge, canvas);
    if (!icon.showsTimerBadge)
        return;
    const double side = clockSide(size * 0.44, wholePixels);
    const double gap = std::max(1.0, std::round(size / 20.0));
    const double x = direction == LayoutDirection::rightToLeft ? 0 : size - side;
    const GlyphBox badge{x, size - side, side, side};
    canvas.ellipse(badge.insetBy(-gap));
    canvas.clear();
    // No crumbs between the badge and the edge.
    const double outer = x > 0 ? badge.center().x : 0;
    addBox(canvas, {outer, badge.y - gap, side / 2, side + gap});
    canvas.clear();
    drawClock(canvas, badge, wholePixels);
}

std::string trayIconName(const MenuBarIcon& icon, LayoutDirection direction) {
    std::string name = "com.wakeloft.Wakeloft-";
    name += !icon.isOn ? "off" : icon.keepsLidClosedAwake ? "lid" : "on";
    if (icon.showsTimerBadge)
        name += direction == LayoutDirection::rightToLeft ? "-timer-rtl" : "-timer";
    return name + "-symbolic";
}

} // namespace wakeloft
