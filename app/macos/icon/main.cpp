// Writes the app's icon in a square of as many pixels as its argument says: see AppIconPicture.h.
#include "AppIconPicture.h"

#include <cstdio>
#include <cstdlib>

int main(int argc, char** argv) {
    constexpr int largest = 1024;
    const int side = argc == 2 ? std::atoi(argv[1]) : 0;
    if (side < 1 || side > largest) {
        std::fprintf(stderr, "usage: %s 1...%d\n", argv[0], largest);
        return EXIT_FAILURE;
    }
    const auto picture = wakeloft::appIconPicture(side);
    const bool isWritten = std::fwrite(picture.data(), 1, picture.size(), stdout) == picture.size();
    if (!isWritten || std::fflush(stdout) != 0) {
        std::perror("wakeloft-draw-app-icon");
        return EXIT_FAILURE;
    }
    return EXIT_SUCCESS;
}
