#pragma once

#include <QImage>

#include <string>
#include <vector>

namespace wakeloft {

/// A drawing in black; only its opacity is compared.
struct Picture {
    std::string name;
    QImage image;
};

/// Where `drawn` has more ink than `expected` ('+') or less ('-'), as a box and a map of the pixels; empty
/// where they agree but for the edges' shades.
std::string difference(const QImage& drawn, const QImage& expected);

/// Pictures side by side, `perRow` in a row, each with a pixel around it; and one of them taken out again.
QImage contactSheet(const std::vector<Picture>& pictures, int perRow);
QImage pictureOn(const QImage& sheet, const std::vector<Picture>& pictures, int perRow, int index);

} // namespace wakeloft
