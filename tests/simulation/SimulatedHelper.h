#pragma once

#include "lease/LidHelperLoop.h"
#include "lease/LidLeaseListener.h"
#include "simulation/SimulatedSetting.h"

#include <string>

namespace wakeloft {

/// A helper process: the real keeper, service, loop and listener. Destroying it is its crash.
struct SimulatedHelper {
    SimulatedHelper(VirtualTime& ownTime, SimulatedSetting& ownSetting)
        : time(ownTime), setting(ownSetting) {}

    VirtualTime& time;
    SimulatedSetting& setting;
    bool wantsToEnd = false;
    VirtualTimer timer{time};
    LidSleepLeaseKeeper keeper{setting, time.clocks, time.clocks};
    LidLeaseService service{keeper, [](const std::string&) {}};
    LidHelperLoop loop{service,
                       keeper,
                       {.dates = time.clocks,
                        .uptime = time.clocks,
                        .timer = timer,
                        .log = [](const std::string&) {},
                        .settled = {},
                        .end = [this] { wantsToEnd = true; },
                        .pause = [this](Seconds seconds) { time.clocks.pass(seconds); }}};
    LidLeaseListener listener{"anybody", loop.requests(time)};
};

} // namespace wakeloft
