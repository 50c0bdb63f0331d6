#include "IconFiles.h"

#include "InkPath.h"
#include "TrayGlyph.h"
#include "status/AppIcon.h"
#include "status/TrayIcon.h"

#include <QByteArray>

#include <array>
#include <cmath>
#include <set>
#include <utility>

namespace wakeloft {

namespace {

/// The folders of the tray's icons, and the size that their files are drawn for.
constexpr std::array folders{std::pair{"16x16", 16}, std::pair{"22x22", 22}, std::pair{"24x24", 24},
                             std::pair{"scalable", 48}};
constexpr int symbolSize = 16;

std::string number(double value) {
    return QByteArray::number(std::round(value * 1000) / 1000, 'g', 6).toStdString();
}

std::string pathElement(const QPainterPath& path, const std::string& attributes) {
    std::string data;
    for (int i = 0; i < path.elementCount(); ++i) {
        const QPainterPath::Element element = path.elementAt(i);
        if (element.isMoveTo())
            data += data.empty() ? "M" : "zM";
        else if (element.isLineTo())
            data += "L";
        else if (element.isCurveTo())
            data += "C";
        else
            data += " ";
        data += number(element.x) + " " + number(element.y);
    }
    const std::string rule = path.fillRule() == Qt::OddEvenFill ? " fill-rule=\"evenodd\"" : "";
    return "<path " + attributes + rule + " d=\"" + data + "z\"/>\n";
}

std::string document(int side, const std::string& content) {
    const std::string size = std::to_string(side);
    return "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"" + size + "\" height=\"" + size +
           "\" viewBox=\"0 0 " + size + " " + size + "\">\n" + content + "</svg>\n";
}

std::string hexadecimal(std::uint32_t color) {
    return "#" + QByteArray::number(color & 0xffffff, 16).rightJustified(6, '0').toStdString();
}

/// Hosts find the colour to replace in three ways: any path's fill, this style sheet's, or not at all.
std::string symbolic(const MenuBarIcon& icon, LayoutDirection direction, int size) {
    InkPath ink;
    drawTrayIcon(icon, direction, size, ink);
    return document(size,
                    "<style id=\"current-color-scheme\" type=\"text/css\">.ColorScheme-Text { color: " +
                        hexadecimal(trayGlyphColor) + "; }</style>\n" +
                        pathElement(ink.path(), "class=\"ColorScheme-Text\" style=\"fill:currentColor\""));
}

std::string application() {
    std::string content;
    int gradients = 0;
    for (const AppIconLayer& layer : appIconLayers()) {
        InkPath ink;
        layer.draw(ink);
        const std::string id = "layer" + std::to_string(++gradients);
        content += "<linearGradient id=\"" + id +
                   "\" gradientUnits=\"userSpaceOnUse\" x1=\"0\" x2=\"0\" y1=\"" + number(layer.top) +
                   "\" y2=\"" + number(layer.bottom) + "\"><stop offset=\"0\" stop-color=\"" +
                   hexadecimal(layer.topColor) + "\"/><stop offset=\"1\" stop-color=\"" +
                   hexadecimal(layer.bottomColor) + "\"/></linearGradient>\n" +
                   pathElement(ink.path(), "fill=\"url(#" + id + ")\"");
    }
    return document(static_cast<int>(appIconSide), content);
}

} // namespace

std::vector<IconFile> iconFiles() {
    const MenuBarIcon on{.isOn = true};
    std::vector<IconFile> files{{"hicolor/scalable/apps/com.wakeloft.Wakeloft.svg", application()},
                                {"hicolor/symbolic/apps/com.wakeloft.Wakeloft-symbolic.svg",
                                 symbolic(on, LayoutDirection::leftToRight, symbolSize)}};
    std::set<std::string> written;
    for (const MenuBarIcon& icon : {MenuBarIcon{}, on, MenuBarIcon{true, true, false},
                                    MenuBarIcon{true, false, true}, MenuBarIcon{true, true, true}})
        for (const auto direction : {LayoutDirection::leftToRight, LayoutDirection::rightToLeft}) {
            const std::string name = trayIconName(icon, direction);
            if (!written.insert(name).second)
                continue;
            for (const auto& [folder, size] : folders) {
                std::string path = "hicolor/";
                path.append(folder).append("/status/").append(name).append(".svg");
                files.push_back({std::move(path), symbolic(icon, direction, size)});
            }
        }
    return files;
}

} // namespace wakeloft
