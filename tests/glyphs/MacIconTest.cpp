#include "WindowIcon.h"
#include "glyphs/Pictures.h"
#include "macos/icon/AppIconPicture.h"

#include <QPainter>

#include <gtest/gtest.h>

#include <array>

using namespace wakeloft;

namespace {

QImage macIcon(int side) {
    const auto bytes = appIconPicture(side);
    return QImage(bytes.data(), side, side, 4LL * side, QImage::Format_RGBA8888).copy();
}

TEST(MacIconTest, isTheWindowsIconWithMoreRoomAroundIt) {
    constexpr int side = 224;
    constexpr int drawing = 206; // the drawing's own margin is a seventh of its tile
    static_assert(drawing == side * appIconTileShare * 128 / 112);
    QImage expected(side, side, QImage::Format_ARGB32_Premultiplied);
    expected.fill(Qt::transparent);
    QPainter painter(&expected);
    painter.drawImage((side - drawing) / 2, (side - drawing) / 2,
                      windowIcon().pixmap(drawing, drawing).toImage());
    painter.end();
    const QImage drawn = macIcon(side);
    EXPECT_EQ(difference(drawn, expected), "");
    int wrong = 0;
    for (int y = 0; y < side; ++y)
        for (int x = 0; x < side; ++x)
            for (auto* channel : std::array<int (*)(QRgb), 3>{qRed, qGreen, qBlue})
                if (qAlpha(expected.pixel(x, y)) == 255) // edges are shaded differently
                    wrong += std::abs(channel(drawn.pixel(x, y)) - channel(expected.pixel(x, y))) > 24;
    EXPECT_LT(wrong, 0.002 * 3 * side * side);
    EXPECT_EQ(qAlpha(macIcon(16).pixel(0, 0)), 0);
    EXPECT_EQ(qAlpha(macIcon(16).pixel(8, 8)), 255);
}

} // namespace
