#pragma once

#include "lease/LidHelperLoop.h"
#include "lease/LidLeaseListener.h"
#include "twins/SessionTwins.h"

#include <string>
#include <vector>

namespace wakeloft {

/// The helper's real parts, put together as in its process, on what it is given. Destroying it is its crash.
struct AssembledHelper {
    SystemSleepSetting& setting;
    ManualClocks& clocks;
    OneShotTimer& timer;
    MainRunLoop& mainLoop;
    std::vector<std::string> lines{}; ///< what it logged
    int ends = 0;                     ///< how often it asked to end
    std::function<void(const std::string&)> log = [this](const std::string& line) { lines.push_back(line); };
    LidSleepLeaseKeeper keeper{setting, clocks, clocks};
    LidLeaseService service{keeper, log};
    LidHelperLoop loop{service,
                       keeper,
                       {.dates = clocks,
                        .uptime = clocks,
                        .timer = timer,
                        .log = log,
                        .settled = nullptr,
                        .end = [this] { ++ends; },
                        .pause = [this](Seconds seconds) { clocks.pass(seconds); }}};
    LidLeaseListener listener{"anybody", loop.requests(mainLoop)};
};

} // namespace wakeloft
