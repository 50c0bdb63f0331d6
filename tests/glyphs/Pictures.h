#pragma once

#include <QImage>

#include <string>
#include <vector>

namespace wakeloft {

/// Where `drawn` is not as `expected`, both on white; empty where they agree but for the edges' shades.
std::string difference(const QImage& drawn, const QImage& expected);

/// Pictures side by side on white, `perRow` in a row, each with a pixel around it.
QImage contactSheet(const std::vector<QImage>& pictures, int perRow);

} // namespace wakeloft
