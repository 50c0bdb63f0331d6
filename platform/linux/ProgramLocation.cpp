#include "ProgramLocation.h"

#include "XdgFolders.h"

#include <algorithm>
#include <cstdlib>

namespace wakeloft {

namespace fs = std::filesystem;

namespace {

fs::path executable() {
    std::error_code error;
    return fs::read_symlink("/proc/self/exe", error);
}

/// An absolute path, or nothing.
fs::path fromEnvironment(const char* name) {
    const char* value = std::getenv(name);
    return value != nullptr && *value == '/' ? fs::path(value) : fs::path();
}

} // namespace

Sandbox currentSandbox() {
    std::error_code error;
    if (fs::exists("/.flatpak-info", error))
        return Sandbox::flatpak;
    // The variable alone says nothing: programs outside inherit it from the terminal that is a snap.
    const auto snap = fromEnvironment("SNAP");
    return !snap.empty() && isBelow(executable(), snap) ? Sandbox::snap : Sandbox::none;
}

fs::path programPath() {
    auto path = executable();
    // An image that mounts itself: the program's own path lasts only as long as it runs.
    const auto image = fromEnvironment("APPIMAGE");
    const auto mounted = fromEnvironment("APPDIR");
    return !image.empty() && !mounted.empty() && isBelow(path, mounted) ? image : path;
}

bool isBelow(const fs::path& path, const fs::path& folder) {
    std::error_code error;
    const auto inner = fs::weakly_canonical(path, error);
    const auto outer = error ? fs::path() : fs::weakly_canonical(folder, error);
    if (error || outer.empty() || inner == outer)
        return false;
    return std::ranges::mismatch(outer, inner).in1 == outer.end();
}

std::vector<fs::path> installationFolders() {
    std::vector<fs::path> folders = {"/usr", "/opt"};
    if (const auto home = homeFolder())
        for (const char* name : {".local", "bin", "Applications"})
            folders.push_back(*home / name);
    return folders;
}

} // namespace wakeloft
