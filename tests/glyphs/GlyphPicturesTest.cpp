#include "GlyphImage.h"
#include "IconFiles.h"
#include "InkPath.h"
#include "StatusNotifierItem.h"
#include "TrayGlyph.h"
#include "WindowIcon.h"
#include "glyphs/Pictures.h"
#include "macos/icon/AppIconPicture.h"
#include "status/TrayIcon.h"

#include <QGuiApplication>
#include <QPainter>
#include <QSvgRenderer>

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>

using namespace wakeloft;

namespace {

constexpr std::array sizes{14, 16, 22, 24, 32, 48};
const std::vector<MenuBarIcon> states{{false, false, false},
                                      {true, false, false},
                                      {true, true, false},
                                      {true, false, true},
                                      {true, true, true}};
constexpr std::array directions{LayoutDirection::leftToRight, LayoutDirection::rightToLeft};

TEST(GlyphPicturesTest, everythingLooksAsItShould) {
    std::vector<std::vector<QImage>> rows;
    for (const int size : sizes) {
        auto& row = rows.emplace_back();
        for (const auto vessel : {AwakeGlyph::Vessel::mugOnLaptop, AwakeGlyph::Vessel::doubleMug})
            for (const bool isFilled : {false, true})
                row.push_back(drawnImage(AwakeGlyph{vessel, isFilled}.image(size), Qt::black, 1));
        for (const auto direction : directions)
            for (const MenuBarIcon& icon : states)
                row.push_back(trayImage(icon, direction, size, Qt::black));
        for (int symbol = 0; symbol <= static_cast<int>(Symbol::thermometerHigh); ++symbol)
            row.push_back(drawnImage(symbolImage(Symbol(symbol), size), Qt::black, 1));
    }
    for (const double scale : {1, 2}) {
        auto& row = rows.emplace_back();
        for (const auto direction : directions)
            for (const MenuBarIcon& icon : states) {
                row.push_back(drawnImage(icon.image(direction), Qt::black, scale));
                row.back().setDevicePixelRatio(1);
            }
    }
    const QImage drawn = contactSheet(rows);
    if (const char* newPicture = std::getenv("WAKELOFT_NEW_PICTURE")) {
        ASSERT_TRUE(drawn.convertToFormat(QImage::Format_Grayscale8).save(newPicture, "png", 0));
        GTEST_SKIP() << "wrote a new picture";
    }
    const QImage wanted(WAKELOFT_PICTURE);
    ASSERT_FALSE(wanted.isNull()) << "the picture cannot be read";
    EXPECT_EQ(difference(drawn, wanted), "");
}

TEST(GlyphPicturesTest, aDifferenceIsFoundAndSaidWhere) {
    const QImage off = trayImage(states[0], LayoutDirection::leftToRight, 16, Qt::black);
    QImage changed = off;
    changed.setPixel(4, 15, qRgb(0, 0, 0));
    changed.setPixel(6, 15, qRgb(0, 0, 0));
    EXPECT_EQ(difference(changed, off), "it differs in the 3 by 1 pixels from 4, 15");
}

// Cut off at its box is what a view would show of anything beyond.
TEST(GlyphTest, drawsInsideItsBoxAtEverySizeAndScaleAndNothingBelowZero) {
    const auto expectInside = [](const InkPath& ink, double width, double height, const auto&... what) {
        const auto isInside =
            QRectF(-0.01, -0.01, width + 0.02, height + 0.02).contains(ink.path().boundingRect());
        EXPECT_TRUE(width > 0 ? isInside : ink.path().isEmpty())
            << testing::PrintToString(std::tuple(what...));
    };
    const auto expectImageInside = [&](const TemplateImage& image, const auto&... what) {
        for (const double scale : {1.0, 1.25, 1.5, 2.0, 3.0}) {
            InkPath ink;
            image.draw(ink, scale);
            expectInside(ink, image.width, image.height, scale, what...);
        }
    };
    for (const MenuBarIcon& icon : states)
        for (const auto direction : directions) {
            const auto name = trayIconName(icon, direction);
            expectImageInside(icon.image(direction), name);
            for (int side = -4; side <= 100; side += side < 4 ? 4 : 1) {
                InkPath ink;
                drawTrayIcon(icon, direction, side, ink);
                expectInside(ink, side, side, name, side);
            }
        }
    for (const double side : {-1.0, 0.0, 8.0, 9.0, 11.0, 13.0, 16.0, 22.0, 31.0, 64.0}) {
        for (int symbol = 0; symbol <= static_cast<int>(Symbol::thermometerHigh); ++symbol)
            expectImageInside(symbolImage(Symbol(symbol), side), symbol, side);
        for (const MenuBarIcon& icon : states)
            expectImageInside(icon.glyph().image(side), icon.isOn, side);
    }
}

TEST(GlyphImageTest, isPaintedOnWholePixelsWhereverItIsPut) {
    const TemplateImage star = symbolImage(Symbol::star, 12);
    const QImage drawn = drawnImage(star, Qt::black, 2);
    QImage canvas(40, 40, QImage::Format_ARGB32_Premultiplied);
    canvas.fill(Qt::transparent);
    canvas.setDevicePixelRatio(2);
    QPainter painter(&canvas);
    painter.translate(2.1, 0);
    paintImage(painter, star, {1.2, 3.8}, Qt::black); // 6.6 and 7.6 pixels from the corner
    painter.end();
    EXPECT_EQ(difference(canvas.copy(7, 8, 24, 24), drawn), "");
}

/// As a host draws it that brings symbols to its own colour.
QImage rendered(const IconFile& file, int size) {
    QImage image(size, size, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    QSvgRenderer(QByteArray::fromStdString(file.svg)).render(&painter);
    painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
    if (file.path.ends_with("-symbolic.svg"))
        painter.fillRect(image.rect(), Qt::black);
    return image;
}

TEST(IconFilesTest, everyIconHasAFileThatLooksAsItIsDrawn) {
    const auto files = iconFiles();
    const auto expectLooks = [&](const std::string& folder, const std::string& name, const QImage& expected) {
        const auto found =
            std::ranges::find(files, "hicolor/" + folder + "/" + name + ".svg", &IconFile::path);
        ASSERT_NE(found, files.end()) << folder << ' ' << name;
        EXPECT_EQ(difference(rendered(*found, expected.width()), expected), "") << found->path;
        for (const char* unfit : {"stroke=", "stroke:", "<mask", "clip"})
            EXPECT_EQ(found->svg.find(unfit), std::string::npos) << found->path << ' ' << unfit;
    };
    for (const MenuBarIcon& icon : states)
        for (const auto direction : directions)
            for (const auto& [folder, size] :
                 {std::pair{"16x16/status", 16}, std::pair{"22x22/status", 22}, std::pair{"24x24/status", 24},
                  std::pair{"scalable/status", 48}})
                expectLooks(folder, trayIconName(icon, direction),
                            trayImage(icon, direction, size, Qt::black));
    expectLooks("symbolic/apps", "com.wakeloft.Wakeloft-symbolic",
                trayImage(states[1], directions[0], 16, Qt::black));
    expectLooks("scalable/apps", "com.wakeloft.Wakeloft", windowIcon().pixmap(128, 128).toImage());
}

TEST(IconFilesTest, theMacsIconIsTheWindowsIconWithMoreRoomAroundIt) {
    constexpr int side = 224;
    constexpr int drawing = 206; // the drawing's own margin is a seventh of its tile
    static_assert(drawing == side * appIconTileShare * 128 / 112);
    QImage expected(side, side, QImage::Format_ARGB32_Premultiplied);
    expected.fill(Qt::transparent);
    constexpr int margin = (side - drawing) / 2;
    QPainter(&expected).drawPixmap(margin, margin, windowIcon().pixmap(drawing, drawing));
    const auto bytes = appIconPicture(side);
    const QImage drawn(bytes.data(), side, side, QImage::Format_RGBA8888);
    EXPECT_EQ(difference(drawn, expected), "");
    EXPECT_EQ(qAlpha(drawn.pixel(0, 0)), 0);
}

TEST(TrayGlyphTest, givesHostsTheirSizesInPlainColour) {
    constexpr std::array<std::uint8_t, 4> plain{0xff, 0x10, 0x20, 0x30};
    const auto pixmaps = trayPixmaps(states[2], LayoutDirection::leftToRight, QColor(0x10, 0x20, 0x30));
    EXPECT_GE(pixmaps.size(), 5U);
    for (const auto& [width, height, bytes] : pixmaps) {
        ASSERT_EQ(bytes.size(), static_cast<std::size_t>(4 * width * height));
        int opaque = 0;
        for (auto pixel = bytes.begin(); pixel != bytes.end(); pixel += 4)
            opaque += std::equal(plain.begin(), plain.end(), pixel);
        EXPECT_GT(opaque, width * height / 6) << width;
    }
}

} // namespace

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    testing::InitGoogleTest(&argc, argv);
    const QGuiApplication application(argc, argv);
    return RUN_ALL_TESTS();
}
