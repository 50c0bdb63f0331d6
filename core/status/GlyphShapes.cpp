#include "status/GlyphShapes.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace wakeloft {

namespace {

/// How far a cubic's control points lie along the tangents of a quarter circle.
constexpr double quarter = 0.5522847498;

GlyphPoint towards(GlyphPoint from, GlyphPoint to, double distance) {
    const double length = std::hypot(to.x - from.x, to.y - from.y);
    if (!(length > 0) || !(distance > 0))
        return from;
    return {from.x + (to.x - from.x) * distance / length, from.y + (to.y - from.y) * distance / length};
}

} // namespace

void addPolygon(GlyphCanvas& canvas, std::span<const GlyphCorner> corners) {
    for (std::size_t i = 0; i < corners.size(); ++i) {
        const auto& [corner, radius] = corners[i];
        const GlyphPoint from =
            towards(corner, corners[(i + corners.size() - 1) % corners.size()].at, radius);
        if (i == 0)
            canvas.moveTo(from);
        else
            canvas.lineTo(from);
        if (!(radius > 0))
            continue;
        const GlyphPoint to = towards(corner, corners[(i + 1) % corners.size()].at, radius);
        canvas.curveTo(towards(from, corner, radius * quarter), towards(to, corner, radius * quarter), to);
    }
    canvas.closePath();
}

void addBox(GlyphCanvas& canvas, GlyphBox box, double topRadius, double bottomRadius) {
    const double top = std::clamp(topRadius, 0.0, std::min(box.width, box.height) / 2);
    const double bottom = std::clamp(bottomRadius, 0.0, std::min(box.width / 2, box.height - top));
    addPolygon(canvas, std::array{GlyphCorner{{box.x, box.y}, top}, GlyphCorner{{box.right(), box.y}, top},
                                  GlyphCorner{{box.right(), box.bottom()}, bottom},
                                  GlyphCorner{{box.x, box.bottom()}, bottom}});
}

Mug Mug::in(GlyphBox box, HandleSide side, PixelGrid grid) {
    Mug mug;
    mug.outline = grid.atLeastOnePixel(box.height * 0.1);
    const double handleWidth = grid.round(box.width * 0.28);
    mug.body = {box.x, box.y, box.width - handleWidth, box.height};
    mug.handle.y = box.y + grid.round(box.height * 0.15);
    mug.handle.height = grid.round(box.height * 0.55);
    mug.handle.width = 2 * handleWidth;
    if (side == HandleSide::left) {
        mug.body.x += handleWidth;
        mug.handle.x = box.x;
    } else {
        mug.handle.x = box.right() - mug.handle.width;
    }
    mug.topRadius = box.height * 0.06;
    mug.bottomRadius = std::min(box.height, mug.body.width) * 0.26;
    return mug;
}

void Mug::draw(GlyphCanvas& canvas, bool isFilled) const {
    if (handle.width > 0) {
        canvas.ellipse(handle.insetBy(outline / 2));
        canvas.stroke(outline);
    }
    addBox(canvas, body, topRadius, bottomRadius);
    canvas.fill();
    if (isFilled)
        return;
    addBox(canvas, body.insetBy(outline), topRadius - outline, bottomRadius - outline);
    canvas.clear();
}

void drawMugPair(GlyphCanvas& canvas, GlyphBox box, bool isFilled, PixelGrid grid) {
    const double gap = grid.middle(box.width * 0.06, box.width);
    const GlyphBox left{box.x, box.y, (box.width - gap) / 2, box.height};
    Mug::in(left, Mug::HandleSide::left, grid).draw(canvas, isFilled);
    Mug::in({left.right() + gap, box.y, left.width, box.height}, Mug::HandleSide::right, grid)
        .draw(canvas, isFilled);
}

namespace {

double handWidth(double side, PixelGrid grid) {
    return grid.atLeastOnePixel(side * 0.11);
}

} // namespace

void drawClock(GlyphCanvas& canvas, GlyphBox box, PixelGrid grid) {
    canvas.ellipse(box);
    canvas.fill();
    const double hand = handWidth(box.width, grid);
    const double x = box.x + grid.round((box.width - hand) / 2);
    const double y = box.y + grid.round((box.height - hand) / 2);
    const double minutes = grid.atLeastOnePixel(box.height * 0.28);
    const double hours = grid.atLeastOnePixel(box.width * 0.22);
    addBox(canvas, {x, y - minutes, hand, minutes + hand});
    canvas.clear();
    addBox(canvas, {x, y, hours + hand, hand});
    canvas.clear();
}

double clockSide(double side, PixelGrid grid) {
    const double rounded = grid.round(side);
    const double rest = (rounded - handWidth(rounded, grid)) * grid.scale;
    return std::lround(rest) % 2 == 0 ? rounded : rounded + grid.pixel();
}

} // namespace wakeloft
