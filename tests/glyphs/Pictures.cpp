#include "glyphs/Pictures.h"

#include <QPainter>

#include <algorithm>
#include <array>

namespace wakeloft {

namespace {

QImage onWhite(const QSize& size, const QImage& picture) {
    QImage image(size, QImage::Format_RGB32);
    image.fill(Qt::white);
    QPainter(&image).drawImage(0, 0, picture);
    return image;
}

int farthestChannel(QRgb one, QRgb other) {
    return std::ranges::max(std::array{std::abs(qRed(one) - qRed(other)),
                                       std::abs(qGreen(one) - qGreen(other)),
                                       std::abs(qBlue(one) - qBlue(other))});
}

} // namespace

std::string difference(const QImage& drawn, const QImage& expected) {
    constexpr int tolerance = 40; // of 255; renderers shade the same edge differently
    if (drawn.size() != expected.size())
        return "the sizes differ";
    const QImage one = onWhite(drawn.size(), drawn);
    const QImage other = onWhite(drawn.size(), expected);
    QRect box;
    for (int y = 0; y < one.height(); ++y)
        for (int x = 0; x < one.width(); ++x)
            if (farthestChannel(one.pixel(x, y), other.pixel(x, y)) > tolerance)
                box = box.united(QRect(x, y, 1, 1));
    if (box.isNull())
        return {};
    return "it differs in the " + std::to_string(box.width()) + " by " + std::to_string(box.height()) +
           " pixels from " + std::to_string(box.x()) + ", " + std::to_string(box.y());
}

QImage contactSheet(const std::vector<std::vector<QImage>>& rows) {
    QImage sheet;
    for (const auto& row : rows) {
        QPoint place(1, std::max(1, sheet.height()));
        for (const QImage& picture : row) {
            const QRect box(place, picture.size());
            sheet = onWhite(sheet.size().expandedTo({box.right() + 2, box.bottom() + 2}), sheet);
            QPainter(&sheet).drawImage(place, picture);
            place.rx() += box.width() + 1;
        }
    }
    return sheet;
}

} // namespace wakeloft
