#pragma once

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

namespace wakeloft {

inline std::string textOf(const std::filesystem::path& file) {
    std::stringstream text;
    text << std::ifstream(file).rdbuf();
    return text.str();
}

/// Makes the folders on the way, too.
inline void put(const std::filesystem::path& file, const std::string& text) {
    std::filesystem::create_directories(file.parent_path());
    std::ofstream(file) << text;
}

/// A folder of the test's own; it goes with this object.
struct TemporaryFolder {
    TemporaryFolder() {
        const auto name = std::filesystem::temp_directory_path() / "wakeloft-test.XXXXXX";
        folder = mkdtemp(name.string().data());
    }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;
    ~TemporaryFolder() { std::filesystem::remove_all(folder); }

    std::filesystem::path folder;
};

} // namespace wakeloft
