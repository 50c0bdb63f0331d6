#include "XdgFolders.h"

#include <cstdlib>
#include <sstream>
#include <string>
#include <utility>

namespace wakeloft {

namespace fs = std::filesystem;

std::expected<fs::path, PlatformError> homeFolder() {
    if (const char* home = std::getenv("HOME"); home != nullptr && *home == '/')
        return fs::path(home);
    return std::unexpected(
        PlatformError{"", 0, "There is no home folder, so Wakeloft cannot keep its settings."});
}

std::expected<fs::path, PlatformError> configFolder() {
    // A relative folder is to be ignored, as XDG folders must be absolute.
    if (const char* folder = std::getenv("XDG_CONFIG_HOME"); folder != nullptr && *folder == '/')
        return fs::path(folder);
    auto home = homeFolder();
    return home ? *home / ".config" : std::move(home);
}

std::vector<fs::path> systemConfigFolders() {
    const char* named = std::getenv("XDG_CONFIG_DIRS");
    std::istringstream list(named == nullptr || *named == '\0' ? "/etc/xdg" : named);
    std::vector<fs::path> folders;
    for (std::string folder; std::getline(list, folder, ':');)
        if (folder.starts_with('/'))
            folders.emplace_back(folder);
    return folders;
}

} // namespace wakeloft
