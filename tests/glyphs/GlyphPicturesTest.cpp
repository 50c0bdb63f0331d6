#include "GlyphImage.h"
#include "IconFiles.h"
#include "QtGlyphCanvas.h"
#include "StatusNotifierItem.h"
#include "TrayGlyph.h"
#include "WindowIcon.h"
#include "glyphs/Pictures.h"
#include "status/TrayIcon.h"

#include <QFile>
#include <QGuiApplication>
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

std::string directionName(LayoutDirection direction) {
    return direction == LayoutDirection::rightToLeft ? ", right to left" : "";
}

QImage trayImage(const MenuBarIcon& icon, LayoutDirection direction, int size) {
    QImage image(size, size, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QtGlyphCanvas canvas(image, Qt::black, 1);
    drawTrayIcon(icon, direction, size, canvas);
    return image;
}

/// Compares with the pictures of `name`.png; or, told by WAKELOFT_NEW_PICTURES, writes that file into the
/// folder so named instead.
void expectAsOn(const std::string& name, const std::vector<Picture>& pictures, int perRow) {
    if (const char* folder = std::getenv("WAKELOFT_NEW_PICTURES")) {
        const auto file = QString::fromStdString(folder + ("/" + name) + ".png");
        ASSERT_TRUE(contactSheet(pictures, perRow).save(file)) << file.toStdString();
        GTEST_SKIP() << "wrote " << file.toStdString() << " instead of comparing with it";
    }
    const std::string file = WAKELOFT_PICTURES "/" + name + ".png";
    const QImage sheet(QString::fromStdString(file));
    ASSERT_FALSE(sheet.isNull()) << file << " cannot be read";
    ASSERT_EQ(sheet.size(), contactSheet(pictures, perRow).size()) << file;
    for (std::size_t i = 0; i < pictures.size(); ++i)
        EXPECT_EQ(difference(pictures[i].image, pictureOn(sheet, pictures, perRow, static_cast<int>(i))), "")
            << pictures[i].name << " is not as in " << file;
}

TEST(GlyphPicturesTest, theStatusGlyphLooksAsItShould) {
    std::vector<Picture> pictures;
    for (const int size : sizes)
        for (const auto vessel : {AwakeGlyph::Vessel::mugOnLaptop, AwakeGlyph::Vessel::doubleMug})
            for (const bool isFilled : {false, true}) {
                const double width = std::round(size * AwakeGlyph{vessel}.aspect());
                const TemplateImage image{width, static_cast<double>(size),
                                          [=](GlyphCanvas& canvas, double scale) {
                                              AwakeGlyph{vessel, isFilled}.draw(
                                                  canvas, {0, 0, width, static_cast<double>(size)}, scale);
                                          }};
                pictures.push_back({(vessel == AwakeGlyph::Vessel::doubleMug ? "two mugs, " : "mug, ") +
                                        std::string(isFilled ? "filled, " : "outlined, ") +
                                        std::to_string(size),
                                    drawnImage(image, Qt::black, 1)});
            }
    expectAsOn("status", pictures, 4);
}

TEST(GlyphPicturesTest, theMenuBarIconLooksAsItShould) {
    std::vector<Picture> pictures;
    for (const double scale : {1, 2})
        for (const auto direction : directions)
            for (const MenuBarIcon& icon : states) {
                QImage image = drawnImage(icon.image(direction), Qt::black, scale);
                image.setDevicePixelRatio(1);
                pictures.push_back({trayIconName(icon, direction) + directionName(direction) + ", scale " +
                                        std::to_string(static_cast<int>(scale)),
                                    image});
            }
    expectAsOn("menu-bar", pictures, 5);
}

TEST(GlyphPicturesTest, theTrayIconLooksAsItShould) {
    std::vector<Picture> pictures;
    for (const int size : sizes)
        for (const auto direction : directions)
            for (const MenuBarIcon& icon : states)
                pictures.push_back(
                    {trayIconName(icon, direction) + directionName(direction) + ", " + std::to_string(size),
                     trayImage(icon, direction, size)});
    expectAsOn("tray", pictures, 10);
}

TEST(GlyphPicturesTest, theSymbolsLookAsTheyShould) {
    std::vector<Picture> pictures;
    for (const int size : {12, 14, 16, 22, 24, 32, 48})
        for (int symbol = 0; symbol <= static_cast<int>(Symbol::thermometerHigh); ++symbol)
            pictures.push_back({std::string(symbolName(Symbol(symbol))) + ", " + std::to_string(size),
                                drawnImage(symbolImage(Symbol(symbol), size), Qt::black, 1)});
    expectAsOn("symbols", pictures, 11);
}

TEST(GlyphPicturesTest, aDifferenceIsFoundAndSaidWhere) {
    const QImage off = trayImage(states[0], LayoutDirection::leftToRight, 16);
    QImage changed = off;
    EXPECT_EQ(difference(changed, off), "");
    changed.setPixel(4, 15, qRgba(0, 0, 0, 255));
    changed.setPixel(6, 15, qRgba(0, 0, 0, 255));
    EXPECT_EQ(difference(changed, off).find("it differs in the 3 by 1 pixels from 4, 15:\n"), 0U);
    EXPECT_NE(difference(changed, off).find("\n....+.+.........\n"), std::string::npos);
    EXPECT_NE(difference(off, off.scaled(8, 8)), "");
    for (std::size_t i = 0; i < states.size(); ++i) // every state tells itself from every other
        for (std::size_t other = i + 1; other < states.size(); ++other)
            for (const int size : sizes)
                EXPECT_NE(difference(trayImage(states[i], directions[0], size),
                                     trayImage(states[other], directions[0], size)),
                          "")
                    << i << ' ' << other << ' ' << size;
}

TEST(GlyphImageTest, isPaintedOnWholePixelsWhereverItIsPut) {
    const TemplateImage star = symbolImage(Symbol::star, 12);
    const QImage drawn = drawnImage(star, Qt::black, 2);
    EXPECT_EQ(drawn.size(), QSize(24, 24));
    QImage canvas(40, 40, QImage::Format_ARGB32_Premultiplied);
    canvas.fill(Qt::transparent);
    canvas.setDevicePixelRatio(2);
    QPainter painter(&canvas);
    painter.translate(2.1, 0);
    paintImage(painter, star, {1.2, 3.8}, Qt::black); // 6.6 and 7.6 pixels from the corner
    painter.end();
    EXPECT_EQ(difference(canvas.copy(7, 8, 24, 24), drawn), "");
    EXPECT_TRUE(drawnImage({}, Qt::black, 2).isNull());
}

QImage rendered(const std::string& svg, int size) {
    QSvgRenderer renderer(QByteArray::fromStdString(svg));
    QImage image(size, size, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    renderer.render(&painter);
    return image;
}

TEST(IconFilesTest, everyStateHasAFileThatLooksAsTheTrayIconDoes) {
    const auto files = iconFiles();
    const auto expectLooks = [&](const std::string& name, const std::string& folder, const QImage& expected) {
        const auto found =
            std::ranges::find(files, "hicolor/" + folder + "/" + name + ".svg", &IconFile::path);
        ASSERT_NE(found, files.end()) << folder << ' ' << name;
        EXPECT_EQ(difference(rendered(found->svg, expected.width()), expected), "") << found->path;
        for (const char* unfit : {"stroke=", "stroke:", "<mask", "clip"})
            EXPECT_EQ(found->svg.find(unfit), std::string::npos) << found->path << ' ' << unfit;
    };
    for (const MenuBarIcon& icon : states)
        for (const auto direction : directions)
            for (const auto& [folder, size] : {std::pair{"16x16", 16}, std::pair{"22x22", 22},
                                               std::pair{"24x24", 24}, std::pair{"scalable", 48}})
                expectLooks(trayIconName(icon, direction), std::string(folder) + "/status",
                            trayImage(icon, direction, size));
    expectLooks("com.wakeloft.Wakeloft-symbolic", "symbolic/apps", trayImage(states[1], directions[0], 16));
}

TEST(IconFilesTest, theApplicationsIconIsTheWindowsIcon) {
    const auto files = iconFiles();
    const auto found =
        std::ranges::find(files, "hicolor/scalable/apps/com.wakeloft.Wakeloft.svg", &IconFile::path);
    ASSERT_NE(found, files.end());
    const QImage file = rendered(found->svg, 128);
    const QImage window = windowIcon().pixmap(128, 128).toImage();
    EXPECT_EQ(difference(window, file), "");
    for (const QPoint& point :
         {QPoint(64, 12), QPoint(64, 116), QPoint(50, 40), QPoint(50, 60), QPoint(50, 100)})
        for (auto* channel : std::array<int (*)(QRgb), 3>{qRed, qGreen, qBlue})
            EXPECT_NEAR(channel(window.pixel(point)), channel(file.pixel(point)), 4)
                << point.x() << ' ' << point.y();
    EXPECT_NE(window.pixel(50, 40), window.pixel(64, 12)); // a sun on the night
}

TEST(TrayGlyphTest, givesHostsTheirSizesInPlainColour) {
    const auto pixmaps = trayPixmaps(states[2], LayoutDirection::leftToRight, QColor(0x10, 0x20, 0x30));
    for (const int size : {16, 22, 24, 32, 44, 48, 64}) {
        const auto found = std::ranges::find(pixmaps, size, &TrayPixmap::width);
        ASSERT_NE(found, pixmaps.end()) << size;
        ASSERT_EQ(found->bytes.size(), static_cast<std::size_t>(4 * size * size));
        int opaque = 0;
        for (std::size_t at = 0; at < found->bytes.size(); at += 4)
            if (found->bytes[at] == 255) {
                ++opaque;
                EXPECT_EQ(std::vector(found->bytes.begin() + static_cast<std::ptrdiff_t>(at) + 1,
                                      found->bytes.begin() + static_cast<std::ptrdiff_t>(at) + 4),
                          (std::vector<std::uint8_t>{0x10, 0x20, 0x30}));
            }
        EXPECT_GT(opaque, size * size / 6);
    }
}

} // namespace

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    testing::InitGoogleTest(&argc, argv);
    const QGuiApplication application(argc, argv);
    return RUN_ALL_TESTS();
}
