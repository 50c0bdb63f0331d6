#include "status/AppIcon.h"
#include "status/LaptopGlyph.h"
#include "status/MenuBarIcon.h"
#include "status/Symbol.h"
#include "status/TrayIcon.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <set>
#include <string>
#include <vector>

using namespace wakeloft;

namespace {

using Detail = LaptopGlyph::Detail;
using Vessel = AwakeGlyph::Vessel;

/// Notes how far the ink reaches, and that every path is used up.
class InkExtent : public GlyphCanvas {
  public:
    double left = 1e9, top = 1e9, right = -1e9, bottom = -1e9;
    int shapes = 0;
    bool hasOpenPath = false;

    void moveTo(GlyphPoint to) override { add(to); }
    void lineTo(GlyphPoint to) override { add(to); }
    void curveTo(GlyphPoint, GlyphPoint, GlyphPoint to) override { add(to); }
    void closePath() override {}
    void ellipse(GlyphBox box) override {
        add({box.x, box.y});
        add({box.right(), box.bottom()});
    }
    void stroke(double width) override { use(width / 2); }
    void fill() override { use(0); }
    void clear() override {
        points_.clear();
        hasOpenPath = false;
    }

  private:
    void add(GlyphPoint point) {
        points_.push_back(point);
        hasOpenPath = true;
    }
    void use(double margin) {
        for (const auto& [x, y] : points_) {
            left = std::min(left, x - margin);
            right = std::max(right, x + margin);
            top = std::min(top, y - margin);
            bottom = std::max(bottom, y + margin);
        }
        ++shapes;
        clear();
    }
    std::vector<GlyphPoint> points_;
};

TEST(LaptopGlyphTest, showsWhatItsPixelsCanCarry) {
    EXPECT_EQ(LaptopGlyph::detailForHeightInPixels(7), Detail::blunt);
    EXPECT_EQ(LaptopGlyph::detailForHeightInPixels(7.99), Detail::blunt);
    EXPECT_EQ(LaptopGlyph::detailForHeightInPixels(8), Detail::plain);
    // 0.6 * 1.675 / (0.4 * 0.09) is 27.92; the other limit, 2 * 1.675 / (0.4 * 0.4) = 20.94, lies below.
    EXPECT_EQ(LaptopGlyph::detailForHeightInPixels(27.9), Detail::plain);
    EXPECT_EQ(LaptopGlyph::detailForHeightInPixels(27.93), Detail::full);
}

TEST(LaptopGlyphTest, isAsWideAsItsHandleOrAtLeastTheLaptop) {
    EXPECT_DOUBLE_EQ(LaptopGlyph::aspect(), (2.3209 + 0.145) / 1.675);
    EXPECT_DOUBLE_EQ(LaptopGlyph::aspect(1.8), 1.2161194029850746);
    EXPECT_DOUBLE_EQ(LaptopGlyph::aspect(1.892), 1.2161194029850746);
    EXPECT_DOUBLE_EQ(LaptopGlyph::inkWidth(Detail::blunt), 2.037);
    EXPECT_DOUBLE_EQ(LaptopGlyph::inkWidth(Detail::full), 2.4659);
}

TEST(LaptopGlyphTest, keepsTheMugOutOfTheLaptopOnWholePixels) {
    EXPECT_DOUBLE_EQ((LaptopGlyph::Placement{10, 3, {}}.footY(0.5)), 8.725);
    EXPECT_DOUBLE_EQ((LaptopGlyph::Placement{10, 3, 1}.footY(0.5)), 9);
    EXPECT_DOUBLE_EQ((LaptopGlyph::Placement{10, 3, 2}.footY(0.5)), 8.5);
    // The laptop's top comes to 8, so that a mug standing on it has its foot at 9, not at 8.
    EXPECT_DOUBLE_EQ((LaptopGlyph::Placement{10, 3, 1}.footY(0.4)), 9);
    // At less than a pixel a unit there is no room for both: the foot stays where it is.
    EXPECT_DOUBLE_EQ((LaptopGlyph::Placement{0.9, 0, 1}.footY(0.4)), 0);
    // A laptop thinner than a pixel still takes one.
    EXPECT_DOUBLE_EQ((LaptopGlyph::Placement{2, 0, 1}.footY(0.1)), 2);
}

TEST(AwakeGlyphTest, hasTheSizeThatItsPointSizeGivesAndNoneBelowZero) {
    const auto size = [](Vessel vessel, double points) {
        const auto image = AwakeGlyph{vessel, true}.image(points);
        return std::pair(image.width, image.height);
    };
    EXPECT_EQ(size(Vessel::mugOnLaptop, 26), std::pair(37.0, 25.0));
    EXPECT_EQ(size(Vessel::doubleMug, 15), std::pair(21.0, 15.0));
    for (const double points : {0.0, 0.4, -3.0, -1e9, std::numeric_limits<double>::quiet_NaN()})
        for (const auto vessel : {Vessel::mugOnLaptop, Vessel::doubleMug}) {
            const auto image = AwakeGlyph{vessel, false}.image(points);
            EXPECT_TRUE(image.isEmpty()) << points;
            InkExtent ink;
            image.draw(ink, 1);
            EXPECT_EQ(ink.shapes, 0) << points;
        }
    EXPECT_TRUE(symbolImage(Symbol::star, 0).isEmpty());
    EXPECT_TRUE(symbolImage(Symbol::star, -1).isEmpty());
    InkExtent ink;
    for (const int side : {0, -5})
        drawTrayIcon({true, true, false}, LayoutDirection::leftToRight, side, ink);
    EXPECT_EQ(ink.shapes, 0);
}

TEST(MenuBarIconTest, drawsTheBadgeOverTheEndOfTheGlyph) {
    const auto size = [](const MenuBarIcon& icon) {
        const auto image = icon.image(LayoutDirection::leftToRight);
        return std::pair(image.width, image.height);
    };
    EXPECT_EQ(size({}), std::pair(21.0, 14.0));
    EXPECT_EQ(size({true, true, false}), std::pair(21.0 + 9 - 2, 18.0));
    EXPECT_EQ(size({true, false, true}), std::pair(21.0, 15.0));
    EXPECT_EQ(size({true, true, true}), std::pair(21.0 + 9 - 3, 18.0));
    EXPECT_EQ(MenuBarIcon{}.glyph(), (AwakeGlyph{Vessel::mugOnLaptop, false}));
    EXPECT_EQ((MenuBarIcon{true, true, true}.glyph()), (AwakeGlyph{Vessel::doubleMug, true}));
}

// Cut off at its box is what a view would show of anything beyond.
TEST(GlyphTest, drawsInsideItsBoxAtEverySizeAndScale) {
    const auto expectInside = [](const std::string& what, double width, double height, const auto& draw) {
        InkExtent ink;
        draw(ink);
        constexpr double tolerance = 1e-6;
        EXPECT_GT(ink.shapes, 0) << what;
        EXPECT_FALSE(ink.hasOpenPath) << what;
        EXPECT_GE(ink.left, -tolerance) << what;
        EXPECT_GE(ink.top, -tolerance) << what;
        EXPECT_LE(ink.right, width + tolerance) << what;
        EXPECT_LE(ink.bottom, height + tolerance) << what;
    };
    const auto expectImageInside = [&](const std::string& what, const TemplateImage& image, double scale) {
        expectInside(what + " at scale " + std::to_string(scale), image.width, image.height,
                     [&](InkExtent& ink) { image.draw(ink, scale); });
    };
    for (const auto& icon : {MenuBarIcon{}, MenuBarIcon{true, true, false}, MenuBarIcon{true, false, true},
                             MenuBarIcon{true, true, true}})
        for (const auto direction : {LayoutDirection::leftToRight, LayoutDirection::rightToLeft}) {
            for (int side = 4; side <= 100; ++side)
                expectInside(trayIconName(icon, direction) + " " + std::to_string(side), side, side,
                             [&](InkExtent& ink) { drawTrayIcon(icon, direction, side, ink); });
            for (const double scale : {1.0, 1.25, 1.5, 2.0, 3.0}) {
                expectImageInside(trayIconName(icon, direction), icon.image(direction), scale);
                for (int points = 4; points <= 100; ++points)
                    expectImageInside("glyph " + std::to_string(points), icon.glyph().image(points), scale);
            }
        }
    for (int symbol = 0; symbol <= static_cast<int>(Symbol::thermometerHigh); ++symbol)
        for (int side = 8; side <= 64; ++side)
            for (const double scale : {1.0, 1.5, 2.0})
                expectImageInside(std::string(symbolName(Symbol(symbol))) + " " + std::to_string(side),
                                  symbolImage(Symbol(symbol), side), scale);
}

TEST(SymbolTest, isFoundByItsNameAlone) {
    std::set<std::string_view> names;
    for (int symbol = 0; symbol <= static_cast<int>(Symbol::thermometerHigh); ++symbol) {
        const auto name = symbolName(Symbol(symbol));
        EXPECT_EQ(symbolNamed(name), Symbol(symbol));
        EXPECT_TRUE(names.insert(name).second) << name;
    }
    EXPECT_EQ(symbolNamed("clock.fill"), Symbol::clockFill);
    EXPECT_EQ(symbolNamed("clock"), std::nullopt);
    EXPECT_EQ(symbolNamed(""), std::nullopt);
}

} // namespace
