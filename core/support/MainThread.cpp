#include "support/MainThread.h"

#include <cstdio>
#include <cstdlib>
#include <thread>

namespace wakeloft {

namespace {
const std::thread::id mainThread = std::this_thread::get_id();
}

void requireMainThread(const char* operation) {
    if (std::this_thread::get_id() == mainThread)
        return;
    std::fprintf(stderr, "Wakeloft: %s was called off the main thread.\n", operation);
    std::abort();
}

} // namespace wakeloft
