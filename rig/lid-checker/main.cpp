#include "LeaseFileWatch.h"
#include "SdEventMainRunLoop.h"
#include "TerminationSignals.h"
#include "lease/RigLeaseFile.h"

#include <cstdlib>
#include <iostream>
#include <string_view>

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
    constexpr std::string_view option = "--lease-file=";
    const std::string_view argument = count == 2 ? arguments[1] : "";
    if (count > 2 || (count == 2 && !argument.starts_with(option)))
        return fail("usage: [--lease-file=PATH]");
    const auto loop = SdEventMainRunLoop::create();
    if (!loop)
        return fail(loop.error().description);
    bool isOver = false;
    const auto signals = TerminationSignals::watch((*loop)->event(), [&] { isOver = true; });
    if (!signals)
        return fail(signals.error().description);
    rig::LeaseFileWatch watch((*loop)->event(),
                              count == 2 ? std::string(argument.substr(option.size()))
                                         : RigLeaseFile::defaultPath,
                              [](rig::LeaseState state) { std::cout << name(state) << "\n"
                                                                    << std::flush; });
    if (const auto started = watch.start(); !started)
        return fail(started.error().description);
    while (!isOver)
        if (sd_event_run((*loop)->event(), UINT64_MAX) < 0)
            return fail("The event loop failed.");
    return EXIT_SUCCESS;
}
