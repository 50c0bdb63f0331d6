#pragma once

#include <string>
#include <vector>

namespace wakeloft {

struct IconFile {
    std::string path; ///< below the folder of icon themes
    std::string svg;
};

/// The icons that are installed: the application's in colour, and of the tray's every state in every layout
/// direction, which hosts bring to their panel's colour; the tray's small ones for the pixels of their size.
std::vector<IconFile> iconFiles();

} // namespace wakeloft
