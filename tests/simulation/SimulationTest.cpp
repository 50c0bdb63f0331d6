#include "simulation/World.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace wakeloft {
namespace {

std::uint64_t firstSeed = 1;
std::uint64_t seedCount = 2000;
const char* program = "";

TEST(Simulation, EverySeedKeepsEveryPromise) {
    Seconds simulated = 0;
    int failed = 0;
    int timesOn = 0;
    constexpr int mostFailures = 3;
    for (std::uint64_t seed = firstSeed; seed < firstSeed + seedCount && failed < mostFailures; ++seed) {
        World world(seed);
        const auto fault = world.run();
        simulated += world.simulatedTime();
        timesOn += world.timesOn();
        if (!fault)
            continue;
        ++failed;
        ADD_FAILURE() << "seed " << seed << ": " << *fault << "replay: " << program << " --seed=" << seed;
    }
    std::printf("%llu seeds, %.0f simulated hours, Deepwake on %d times\n",
                static_cast<unsigned long long>(seedCount), simulated / 3600, timesOn);
    if (seedCount > 1) {
        EXPECT_GT(timesOn, 0) << "nothing was put to the test";
    }
}

} // namespace
} // namespace wakeloft

/// --seed=N runs that one, --seeds=COUNT so many.
int main(int count, char** arguments) {
    testing::InitGoogleTest(&count, arguments);
    wakeloft::program = arguments[0];
    for (int index = 1; index < count; ++index) {
        const char* argument = arguments[index];
        if (std::strncmp(argument, "--seed=", 7) == 0) {
            wakeloft::firstSeed = std::strtoull(argument + 7, nullptr, 10);
            wakeloft::seedCount = 1;
        } else if (std::strncmp(argument, "--seeds=", 8) == 0) {
            wakeloft::seedCount = std::strtoull(argument + 8, nullptr, 10);
        } else {
            std::fprintf(stderr, "usage: %s [--seed=N | --seeds=COUNT]\n", arguments[0]);
            return EXIT_FAILURE;
        }
    }
    return RUN_ALL_TESTS();
}
