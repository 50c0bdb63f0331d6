#pragma once

#include <QImage>

#include <string>
#include <vector>

namespace wakeloft {

/// Where `drawn` is not as `expected`, both on white; empty where they agree but for the edges' shades.
std::string difference(const QImage& drawn, const QImage& expected);

/// Pictures in rows on white, each with a pixel around it.
QImage contactSheet(const std::vector<std::vector<QImage>>& rows);

} // namespace wakeloft
