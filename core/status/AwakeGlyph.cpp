#include "status/AwakeGlyph.h"

#include "status/GlyphShapes.h"
#include "status/LaptopGlyph.h"

#include <cmath>

namespace wakeloft {

namespace {

constexpr double mugHeight = 0.8; ///< of the pair, in its box

} // namespace

TemplateImage AwakeGlyph::image(double pointSize) const {
    const double height = std::round(vessel == Vessel::doubleMug ? pointSize : pointSize * 0.96);
    if (!(height > 0))
        return {};
    const double width = std::round(height * aspect());
    return {width, height, [glyph = *this, width, height](GlyphCanvas& canvas, double deviceScale) {
                glyph.draw(canvas, {0, 0, width, height}, deviceScale);
            }};
}

void AwakeGlyph::draw(GlyphCanvas& canvas, GlyphBox box, double deviceScale) const {
    if (vessel == Vessel::doubleMug) {
        const PixelGrid grid{deviceScale};
        const double height = grid.round(box.height * mugHeight);
        const double y = box.y + grid.round((box.height - height) / 2);
        drawMugPair(canvas, {box.x, y, box.width, height}, isFilled, grid);
        return;
    }
    const auto detail = LaptopGlyph::detailForHeightInPixels(box.height * deviceScale);
    LaptopGlyph::draw(isFilled, box, detail, deviceScale, canvas);
}

double AwakeGlyph::aspect() const {
    return vessel == Vessel::doubleMug ? mugPairAspect * mugHeight : LaptopGlyph::aspect();
}

} // namespace wakeloft
