#include "TrayGlyph.h"

#include "QtGlyphCanvas.h"
#include "StatusNotifierItem.h"
#include "status/TrayIcon.h"

#include <QtEndian>

#include <filesystem>

namespace wakeloft {

namespace {

TrayPixmap trayPixmap(const QImage& image) {
    TrayPixmap pixmap{image.width(), image.height(), {}};
    pixmap.bytes.resize(static_cast<std::size_t>(image.width()) * static_cast<std::size_t>(image.height()) *
                        4);
    const auto rowBytes = static_cast<std::ptrdiff_t>(image.width()) * 4;
    for (int y = 0; y < image.height(); ++y)
        qToBigEndian<quint32>(image.constScanLine(y), image.width(), pixmap.bytes.data() + y * rowBytes);
    return pixmap;
}

} // namespace

QImage trayImage(const MenuBarIcon& icon, LayoutDirection direction, int size, const QColor& color) {
    QImage image(size, size, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QtGlyphCanvas canvas(image, color, 1);
    drawTrayIcon(icon, direction, size, canvas);
    return image;
}

std::vector<TrayPixmap> trayPixmaps(const MenuBarIcon& icon, LayoutDirection direction, const QColor& color) {
    std::vector<TrayPixmap> pixmaps;
    for (const int size : {16, 22, 24, 32, 44, 48, 64})
        pixmaps.push_back(
            trayPixmap(trayImage(icon, direction, size, color).convertToFormat(QImage::Format_ARGB32)));
    return pixmaps;
}

std::string trayIconFolder() {
    std::error_code error;
    const auto executable = std::filesystem::read_symlink("/proc/self/exe", error);
    const auto file = std::filesystem::path("hicolor/scalable/status") /
                      (trayIconName({}, LayoutDirection::leftToRight) + ".svg");
    for (auto folder = executable.parent_path(); folder.has_relative_path(); folder = folder.parent_path())
        if (const auto icons = folder / "share/icons"; std::filesystem::exists(icons / file, error))
            return icons;
    return {};
}

} // namespace wakeloft
