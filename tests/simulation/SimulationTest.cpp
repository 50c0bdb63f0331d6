#include "simulation/World.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>

namespace wakeloft {
namespace {

std::uint64_t firstSeed = 1;
std::uint64_t seedCount = 2000;
const char* program = "";

TEST(Simulation, EverySeedKeepsEveryPromise) {
    Seconds simulated = 0;
    int timesOn = 0;
    for (std::uint64_t seed = firstSeed; seed < firstSeed + seedCount; ++seed) {
        World world(seed);
        const auto fault = world.run();
        simulated += world.simulatedTime();
        timesOn += world.timesOn();
        ASSERT_FALSE(fault) << "seed " << seed << ": " << *fault << "replay: " << program
                            << " --seed=" << seed;
    }
    std::printf("%llu seeds, %.0f simulated hours, Deepwake on %d times\n",
                static_cast<unsigned long long>(seedCount), simulated / 3600, timesOn);
    EXPECT_TRUE(timesOn > 0 || seedCount == 1) << "nothing was put to the test";
}

} // namespace
} // namespace wakeloft

/// --seed=N runs that one, --seeds=COUNT so many.
int main(int count, char** arguments) {
    testing::InitGoogleTest(&count, arguments);
    wakeloft::program = arguments[0];
    for (const std::string& argument : std::vector<std::string>(arguments + 1, arguments + count)) {
        const auto number = std::strtoull(argument.substr(argument.find('=') + 1).c_str(), nullptr, 10);
        if (argument.starts_with("--seed=")) {
            wakeloft::firstSeed = number;
            wakeloft::seedCount = 1;
        } else if (argument.starts_with("--seeds=")) {
            wakeloft::seedCount = number;
        } else {
            std::fprintf(stderr, "usage: %s [--seed=N | --seeds=COUNT]\n", arguments[0]);
            return EXIT_FAILURE;
        }
    }
    return RUN_ALL_TESTS();
}
