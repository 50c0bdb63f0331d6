#include "IconFiles.h"

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>

/// Writes the icon files below the folder that is its argument.
int main(int argc, char** argv) {
    if (argc != 2) {
        std::fprintf(stderr, "usage: %s FOLDER\n", argv[0]);
        return EXIT_FAILURE;
    }
    for (const auto& [name, svg] : wakeloft::iconFiles()) {
        const auto path = std::filesystem::path(argv[1]) / name;
        std::error_code error;
        std::filesystem::create_directories(path.parent_path(), error);
        std::ofstream file(path);
        if (!(file << svg) || !file.flush()) {
            std::fprintf(stderr, "%s cannot be written\n", path.c_str());
            return EXIT_FAILURE;
        }
    }
}
