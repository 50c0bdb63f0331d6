#include "status/GlyphShapes.h"
#include "status/Symbol.h"

#include <array>
#include <cmath>
#include <numbers>
#include <vector>

namespace wakeloft {

namespace {

constexpr double pi = std::numbers::pi;

/// The square that a symbol is drawn in; places are fractions of its side.
class Sheet {
  public:
    Sheet(GlyphCanvas& canvas, GlyphBox box, double deviceScale)
        : canvas_(canvas), box_(box), grid_{deviceScale} {}

    [[nodiscard]] double line(double weight = 0.09) const {
        return grid_.atLeastOnePixel(weight * box_.width);
    }
    [[nodiscard]] GlyphPoint at(double x, double y) const {
        return {box_.x + x * box_.width, box_.y + y * box_.height};
    }
    /// On whole pixels.
    [[nodiscard]] GlyphBox between(double left, double top, double right, double bottom) const {
        const double x = grid_.round(left * box_.width);
        const double y = grid_.round(top * box_.height);
        return {box_.x + x, box_.y + y, grid_.round(right * box_.width) - x,
                grid_.round(bottom * box_.height) - y};
    }
    /// Near `weight`, with a middle where the box has its own.
    [[nodiscard]] double middleLine(double weight) const {
        return grid_.middle(weight * box_.width, box_.width);
    }
    /// A dot of few pixels is sharper as a square.
    void addDot(double x, double y, double side) {
        const double radius = side * grid_.scale < 2.5 ? 0 : side / 2;
        addBox(canvas_, {x, y, side, side}, radius, radius);
    }

    void tick(std::span<const GlyphPoint> points, double weight) {
        canvas_.moveTo(points.front());
        for (const GlyphPoint& point : points.subspan(1))
            canvas_.lineTo(point);
        canvas_.stroke(std::max(grid_.pixel(), weight * box_.width));
    }

    void star(bool isFilled) {
        std::vector<GlyphCorner> corners;
        const double outline = line(0.085);
        const double radius = isFilled ? 0.52 : 0.52 - outline / box_.width / 2;
        for (int i = 0; i < 10; ++i) {
            const double angle = i * pi / 5;
            const double reach = i % 2 == 0 ? radius : radius * 0.46;
            corners.push_back(
                {at(0.5 + reach * std::sin(angle), 0.53 - reach * std::cos(angle)), 0.06 * box_.width});
        }
        addPolygon(canvas_, corners);
        isFilled ? canvas_.fill() : canvas_.stroke(outline);
    }

    void gear() {
        const bool isSmall = box_.width * grid_.scale < 15.5;
        const int teeth = isSmall ? 6 : 8;
        const double outline = line(0.085);
        const double tip = 0.5 - outline / box_.width / 2;
        const double root = tip * 0.78;
        std::vector<GlyphCorner> corners;
        for (int tooth = 0; tooth < teeth; ++tooth)
            for (const auto& [offset, radius] : {std::pair{-0.30, root}, std::pair{-0.19, tip},
                                                 std::pair{0.19, tip}, std::pair{0.30, root}}) {
                const double angle = (tooth + offset) * 2 * pi / teeth;
                corners.push_back(
                    {at(0.5 + radius * std::sin(angle), 0.5 - radius * std::cos(angle)), 0.03 * box_.width});
            }
        addPolygon(canvas_, corners);
        canvas_.stroke(outline);
        if (isSmall) { // no room for a ring
            const double hub = middleLine(0.25);
            canvas_.ellipse(box_.insetBy((box_.width - hub) / 2));
            canvas_.fill();
            return;
        }
        canvas_.ellipse(box_.insetBy(box_.width * 0.34));
        canvas_.stroke(outline);
    }

    void info() {
        const double outline = line();
        canvas_.ellipse(box_.insetBy(outline / 2));
        canvas_.stroke(outline);
        const double stem = middleLine(0.11);
        const double x = box_.x + (box_.width - stem) / 2;
        const double dotTop = between(0, 0.22, 1, 1).y;
        const double stemTop = std::max(between(0, 0.45, 1, 1).y, dotTop + stem + grid_.pixel());
        addDot(x, dotTop, stem);
        canvas_.fill();
        addBox(canvas_, {x, stemTop, stem, between(0, 0, 1, 0.78).bottom() - stemTop});
        canvas_.fill();
    }

    void triangle() {
        const double bottom = between(0, 0, 1, 0.94).bottom();
        const double radius = 0.17 * box_.width;
        addPolygon(canvas_, std::array{GlyphCorner{at(0.5, -0.03), radius},
                                       GlyphCorner{{at(1.03, 0).x, bottom}, radius},
                                       GlyphCorner{{at(-0.03, 0).x, bottom}, radius}});
        canvas_.fill();
        const double stem = middleLine(0.11);
        const double x = box_.x + (box_.width - stem) / 2;
        const GlyphBox bar = between(0, 0.3, 1, 0.6);
        addBox(canvas_, {x, bar.y, stem, bar.height});
        canvas_.clear();
        addDot(x, bar.bottom() + line(0.07), stem);
        canvas_.clear();
    }

    void thermometer() {
        const double outline = line();
        const double gap = line(0.05);
        const double tube = middleLine(0.36);
        const double column = tube - 2 * (outline + gap);
        const bool hasGap = column >= grid_.pixel() * 0.99;
        const double bulb = middleLine(0.54);
        const GlyphBox glass{box_.x + (box_.width - tube) / 2, box_.y, tube, box_.height - bulb / 2};
        const GlyphBox ball{box_.x + (box_.width - bulb) / 2, box_.bottom() - bulb, bulb, bulb};
        const auto capsule = [&](GlyphBox box) { addBox(canvas_, box, box.width / 2, 0); };
        capsule(glass);
        canvas_.fill();
        canvas_.ellipse(ball);
        canvas_.fill();
        const double level = between(0, 0.24, 1, 1).y;
        capsule({glass.x + outline, glass.y + outline, tube - 2 * outline,
                 (hasGap ? glass.bottom() : level) - glass.y - outline});
        canvas_.clear();
        if (!hasGap)
            return;
        canvas_.ellipse(ball.insetBy(outline));
        canvas_.clear();
        capsule({box_.x + (box_.width - column) / 2, level, column, ball.center().y - level});
        canvas_.fill();
        canvas_.ellipse(ball.insetBy(outline + gap));
        canvas_.fill();
    }

    void mug(bool isFilled) {
        Mug::in(between(0.02, 0.08, 0.98, 0.92), Mug::HandleSide::right, grid_).draw(canvas_, isFilled);
    }

    void clock() { drawClock(canvas_, box_, grid_); }

  private:
    GlyphCanvas& canvas_;
    GlyphBox box_;
    PixelGrid grid_;
};

} // namespace

void drawSymbol(Symbol symbol, GlyphCanvas& canvas, GlyphBox box, double deviceScale) {
    Sheet sheet(canvas, box, deviceScale);
    switch (symbol) {
    case Symbol::checkmark:
        return sheet.tick(std::array{sheet.at(0.14, 0.54), sheet.at(0.4, 0.8), sheet.at(0.86, 0.22)}, 0.12);
    case Symbol::chevronDown:
        return sheet.tick(std::array{sheet.at(0.16, 0.34), sheet.at(0.5, 0.68), sheet.at(0.84, 0.34)}, 0.12);
    case Symbol::clockFill:
        return sheet.clock();
    case Symbol::exclamationmarkTriangleFill:
        return sheet.triangle();
    case Symbol::gearshape:
        return sheet.gear();
    case Symbol::infoCircle:
        return sheet.info();
    case Symbol::mug:
        return sheet.mug(false);
    case Symbol::mugFill:
        return sheet.mug(true);
    case Symbol::star:
        return sheet.star(false);
    case Symbol::starFill:
        return sheet.star(true);
    case Symbol::thermometerHigh:
        return sheet.thermometer();
    }
}

} // namespace wakeloft
