#include "glyphs/Pictures.h"

#include <QPainter>
#include <QRect>

#include <algorithm>
#include <cstdlib>

namespace wakeloft {

namespace {

constexpr int tolerance = 40; ///< of 255; renderers shade the same edge differently

/// Where each picture lies on the sheet; the last box is the sheet's own.
std::vector<QRect> places(const std::vector<Picture>& pictures, int perRow) {
    std::vector<QRect> boxes;
    int x = 1, y = 1, rowHeight = 0, sheetWidth = 0;
    for (std::size_t i = 0; i < pictures.size(); ++i) {
        if (i > 0 && i % static_cast<std::size_t>(perRow) == 0) {
            x = 1;
            y += rowHeight + 1;
            rowHeight = 0;
        }
        const QSize size = pictures[i].image.size();
        boxes.emplace_back(QPoint(x, y), size);
        x += size.width() + 1;
        rowHeight = std::max(rowHeight, size.height());
        sheetWidth = std::max(sheetWidth, x);
    }
    boxes.emplace_back(0, 0, sheetWidth, y + rowHeight + 1);
    return boxes;
}

} // namespace

std::string difference(const QImage& drawn, const QImage& expected) {
    if (drawn.size() != expected.size())
        return "it is " + std::to_string(drawn.width()) + " by " + std::to_string(drawn.height()) + ", not " +
               std::to_string(expected.width()) + " by " + std::to_string(expected.height());
    QRect box;
    std::string map;
    for (int y = 0; y < drawn.height(); ++y) {
        for (int x = 0; x < drawn.width(); ++x) {
            const int more = qAlpha(drawn.pixel(x, y)) - qAlpha(expected.pixel(x, y));
            map += more > tolerance                  ? '+'
                   : more < -tolerance               ? '-'
                   : qAlpha(drawn.pixel(x, y)) > 127 ? 'o'
                                                     : '.';
            if (std::abs(more) > tolerance)
                box = box.united(QRect(x, y, 1, 1));
        }
        map += '\n';
    }
    if (box.isNull())
        return {};
    return "it differs in the " + std::to_string(box.width()) + " by " + std::to_string(box.height()) +
           " pixels from " + std::to_string(box.x()) + ", " + std::to_string(box.y()) + ":\n" + map;
}

QImage contactSheet(const std::vector<Picture>& pictures, int perRow) {
    const auto boxes = places(pictures, perRow);
    QImage sheet(boxes.back().size(), QImage::Format_ARGB32_Premultiplied);
    sheet.fill(Qt::white);
    QPainter painter(&sheet);
    for (std::size_t i = 0; i < pictures.size(); ++i)
        painter.drawImage(boxes[i].topLeft(), pictures[i].image);
    painter.end();
    return sheet.convertToFormat(QImage::Format_Grayscale8);
}

QImage pictureOn(const QImage& sheet, const std::vector<Picture>& pictures, int perRow, int index) {
    QImage picture = sheet.copy(places(pictures, perRow)[static_cast<std::size_t>(index)])
                         .convertToFormat(QImage::Format_ARGB32_Premultiplied);
    for (int y = 0; y < picture.height(); ++y)
        for (int x = 0; x < picture.width(); ++x)
            picture.setPixel(x, y, qRgba(0, 0, 0, 255 - qGray(picture.pixel(x, y))));
    return picture;
}

} // namespace wakeloft
