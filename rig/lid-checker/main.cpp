#include "LeaseFileArgument.h"
#include "LeaseFileWatch.h"
#include "SdEventMainRunLoop.h"
#include "TerminationSignals.h"

#include <cstdlib>
#include <iostream>

using namespace wakeloft;

namespace {

int fail(const std::string& sentence) {
    std::cerr << "wakeloft-rig-lid-checker: " << sentence << '\n';
    return EXIT_FAILURE;
}

const char* name(rig::LeaseState state) {
    switch (state) {
    case rig::LeaseState::held:
        return "held";
    case rig::LeaseState::lapsed:
        return "lapsed";
    case rig::LeaseState::missing:
        break;
    }
    return "missing";
}

} // namespace

/// Prints held, lapsed or missing: now, and at each change of the lease file, until it is asked to end.
int main(int count, char** arguments) {
    const auto file = rig::leaseFileArgument(count, arguments);
    if (!file)
        return fail(file.error());
    const auto loop = SdEventMainRunLoop::create();
    if (!loop)
        return fail(loop.error().description);
    bool isOver = false;
    const auto signals = TerminationSignals::watch((*loop)->event(), [&] { isOver = true; });
    if (!signals)
        return fail(signals.error().description);
    rig::LeaseFileWatch watch((*loop)->event(), *file,
                              [](rig::LeaseState state) { std::cout << name(state) << "\n"
                                                                    << std::flush; },
                              [](const PlatformError& error) { fail(error.description); });
    if (const auto started = watch.start(); !started)
        return fail(started.error().description);
    while (!isOver)
        if (sd_event_run((*loop)->event(), UINT64_MAX) < 0)
            return fail("The event loop failed.");
    return EXIT_SUCCESS;
}
