#include "status/LaptopGlyph.h"

#include "status/GlyphShapes.h"
#include "status/PixelGrid.h"

#include <algorithm>
#include <array>

namespace wakeloft {

namespace {

constexpr double laptopHeight = 0.4;
constexpr double mugGap = laptopHeight + 0.11; ///< where the mug's foot is, above the laptop's bottom
constexpr double innerSpacing = 0.11;          ///< what the outlines leave free inside the laptop
constexpr double seam = 0.036;                 ///< between the laptop's base and its lid
constexpr double notchHalfWidth = 0.2;
constexpr double cornerRadius = 0.12;

/// A horizontal part of the laptop, from and to heights above its bottom.
struct Slab {
    double from = 0;
    double to = 0;
    double taper = 0; ///< how much farther in the top ends are than the bottom ends
    double inset = 0; ///< how much farther in all of it is
    bool hasRoundedBottom = false;
    bool hasRoundedTop = false;
};

constexpr Slab whole{0, 0.4, 0, 0, true, true};
constexpr Slab base{0, 0.204, 0, 0, true, false};
constexpr Slab lid{0.24, 0.4, 0.045, 0.03, false, true};

/// One drawing: units brought to the canvas, edges to whole pixels.
class Drawing {
  public:
    Drawing(GlyphBox box, LaptopGlyph::Detail detail, double deviceScale, GlyphCanvas& canvas)
        : canvas_(canvas),
          grid_{deviceScale},
          unit_(box.height / LaptopGlyph::boxHeight),
          left_(box.x + (box.width - LaptopGlyph::inkWidth(detail) * unit_) / 2),
          detail_(detail),
          placement_{unit_, -box.bottom(), deviceScale} {}

    void laptop(bool isFilled) {
        const double outline = grid_.atLeastOnePixel(LaptopGlyph::outline * unit_);
        if (!isFilled) {
            addSlab(whole, outline / 2);
            canvas_.stroke(outline);
            if (detail_ == LaptopGlyph::Detail::full && innerSpacing * unit_ * grid_.scale >= 2.5)
                innerSeam(outline);
            return;
        }
        if (detail_ == LaptopGlyph::Detail::full) {
            addSlab(base, 0);
            canvas_.fill();
            addSlab(lid, 0);
            canvas_.fill();
            notch();
        } else {
            addSlab(whole, 0);
            canvas_.fill();
        }
    }

    void mug(bool isFilled) {
        const double foot = placement_.footY(mugGap);
        const double top = placement_.at(LaptopGlyph::margin + LaptopGlyph::inkHeight);
        if (!(top > foot))
            return;
        Mug mug;
        mug.outline = grid_.atLeastOnePixel(LaptopGlyph::outline * unit_);
        mug.body = boxBetween(0.2, foot, 1.837, top);
        mug.topRadius = 0.07 * unit_;
        mug.bottomRadius = 0.6 * unit_;
        if (detail_ != LaptopGlyph::Detail::blunt) {
            const GlyphBox handle = LaptopGlyph::handle.insetBy(-LaptopGlyph::outline / 2);
            mug.handle =
                boxBetween(handle.x, placement_.at(handle.y), handle.right(), placement_.at(handle.bottom()));
        }
        mug.draw(canvas_, isFilled);
    }

  private:
    [[nodiscard]] double x(double units) const { return grid_.round(left_ + units * unit_); }
    /// x in units, y as `Placement` gives it: upwards, from the canvas's origin.
    [[nodiscard]] GlyphBox boxBetween(double left, double low, double right, double high) const {
        return {x(left), -high, x(right) - x(left), high - low};
    }

    void addSlab(const Slab& slab, double inwards) {
        const double margin = LaptopGlyph::margin;
        const double low = placement_.at(margin + slab.from);
        double high = placement_.at(margin + slab.to);
        if (slab.to < laptopHeight) // the seam stays open
            high = std::min(high, placement_.at(margin + lid.from) - grid_.atLeastOnePixel(seam * unit_));
        const GlyphBox box = boxBetween(LaptopGlyph::outline + slab.inset, low,
                                        LaptopGlyph::laptopRightEdge - slab.inset, high)
                                 .insetBy(inwards);
        const double taper = slab.taper * unit_;
        const double radius = std::min(cornerRadius * unit_, (high - low) / 2) - inwards;
        const double top = slab.hasRoundedTop ? radius : 0;
        const double bottom = slab.hasRoundedBottom ? radius : 0;
        addPolygon(canvas_, std::array{GlyphCorner{{box.x + taper, box.y}, top},
                                       GlyphCorner{{box.right() - taper, box.y}, top},
                                       GlyphCorner{{box.right(), box.bottom()}, bottom},
                                       GlyphCorner{{box.x, box.bottom()}, bottom}});
    }

    void innerSeam(double outline) {
        const double thickness = grid_.atLeastOnePixel(seam * unit_);
        const double low = placement_.at(LaptopGlyph::margin) + outline;
        const double high = placement_.at(LaptopGlyph::margin + laptopHeight) - outline;
        const double from = low + grid_.round((high - low - thickness) / 2);
        addBox(canvas_,
               boxBetween(LaptopGlyph::outline, from, LaptopGlyph::laptopRightEdge, from + thickness));
        canvas_.fill();
    }

    /// What one opens the lid by.
    void notch() {
        const double top = placement_.at(LaptopGlyph::margin + lid.from);
        const double depth = 2 * grid_.atLeastOnePixel(seam * unit_);
        const double middle = LaptopGlyph::laptopMiddle;
        const double width = x(middle + notchHalfWidth) - x(middle - notchHalfWidth);
        addBox(canvas_, {x(middle - notchHalfWidth), -top, width, depth}, 0, depth / 2);
        canvas_.clear();
    }

    GlyphCanvas& canvas_;
    PixelGrid grid_;
    double unit_;
    double left_;
    LaptopGlyph::Detail detail_;
    LaptopGlyph::Placement placement_;
};

} // namespace

LaptopGlyph::Detail LaptopGlyph::detailForHeightInPixels(double height) {
    if (height < 8)
        return Detail::blunt;
    const bool showsSeam = height * laptopHeight * 0.09 / boxHeight >= 0.6;
    const bool showsLid = height * laptopHeight * 0.4 / boxHeight >= 2.0;
    return showsSeam && showsLid ? Detail::full : Detail::plain;
}

double LaptopGlyph::Placement::at(double units) const {
    const double y = bottom + units * unit;
    return deviceScale ? PixelGrid{*deviceScale}.round(y) : y;
}

double LaptopGlyph::Placement::footY(double gap) const {
    const double foot = at(margin + gap);
    if (!deviceScale)
        return foot;
    const double pixel = PixelGrid{*deviceScale}.pixel();
    const double lowest = std::max(at(margin + laptopHeight), at(margin) + pixel) + pixel;
    return foot < lowest && lowest <= at(margin + inkHeight) - pixel ? lowest : foot;
}

void LaptopGlyph::draw(bool isFilled, GlyphBox box, Detail detail, double deviceScale, GlyphCanvas& canvas) {
    if (!(box.width > 0) || !(box.height > 0))
        return;
    Drawing drawing(box, detail, deviceScale, canvas);
    drawing.mug(isFilled);
    drawing.laptop(isFilled);
}

} // namespace wakeloft
