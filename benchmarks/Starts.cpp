#include "Benchmarks.h"
#include "RunningHelper.h"
#include "TrayWatcher.h"
#include "lease/LidHelperService.h"

namespace wakeloft {

namespace {

/// Starts a program and ends it: how long until it was there, in milliseconds.
using Start = std::function<double()>;

double millisecondsBetween(Clock::time_point start, Clock::time_point end) {
    return std::chrono::duration<double, std::milli>(end - start).count();
}

void measureStarts(Table& table, const std::string& name, double mostRatio, const Start& start,
                   const Start& startFloor) {
    constexpr int warmUps = 3;
    constexpr int rounds = 100;
    Samples figure;
    Samples floor;
    for (int round = -warmUps; round < rounds; ++round) {
        if (round == 0)
            figure = floor = {}; // warm from here on
        byTurns(round, [&] { figure.add(start()); }, [&] { floor.add(startFloor()); });
    }
    table.limitRatio(name, "ms", figure, floor, mostRatio);
}

} // namespace

void measureStartToTray(Table& table, const MeasuredPrograms& programs) {
    constexpr double mostRatio = 1.15;
    const SessionBus sessionBus;
    TrayWatcher tray(sessionBus.address());
    const auto startOf = [&](const std::string& program) {
        return [&] {
            double milliseconds = 0;
            {
                const Program running({program}, sessionBus.environment());
                milliseconds = millisecondsBetween(running.start(), tray.waitForItem());
            }
            tray.waitForNoItem();
            return milliseconds;
        };
    };
    measureStarts(table, "start to tray icon read, warm", mostRatio, startOf(programs.wakeloft),
                  startOf(programs.bareTray));
}

void measureStartToName(Table& table, const MeasuredPrograms& programs) {
    constexpr double mostRatio = 1.3;
    NameWatch helperName(LidHelperService::label);
    NameWatch bareName(bareServiceName);
    const auto startOf = [](const std::string& program, NameWatch& name) {
        return [&] {
            double milliseconds = 0;
            {
                const Program running({program});
                milliseconds = millisecondsBetween(running.start(), name.waitForOwner());
            }
            name.waitForNoOwner();
            return milliseconds;
        };
    };
    measureStarts(table, "helper, start to name owned, warm", mostRatio,
                  startOf(programs.lidHelper, helperName), startOf(programs.bareService, bareName));
}

} // namespace wakeloft
