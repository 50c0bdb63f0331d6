#include "HelperLog.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <utility>

namespace wakeloft {

void logLine(LogPriority priority, std::string line) {
    constexpr unsigned char deleteCharacter = 127;
    std::ranges::replace_if(
        line, [](unsigned char character) { return character < ' ' || character == deleteCharacter; }, '?');
    // The journal reads the priority from the line's beginning.
    if (std::getenv("JOURNAL_STREAM") != nullptr)
        std::fprintf(stderr, "<%d>%s\n", std::to_underlying(priority), line.c_str());
    else
        std::fprintf(stderr, "WakeloftLidHelper: %s\n", line.c_str());
}

} // namespace wakeloft
