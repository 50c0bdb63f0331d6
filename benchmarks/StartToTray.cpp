#include "Benchmarks.h"
#include "Program.h"
#include "TrayWatcher.h"

namespace wakeloft {

namespace {

constexpr double mostRatio = 1.15;

double start(const std::string& program, const SessionBus& sessionBus, TrayWatcher& tray) {
    double milliseconds = 0;
    {
        const Program running({program}, sessionBus.environment());
        milliseconds =
            std::chrono::duration<double, std::milli>(tray.waitForItem() - running.start()).count();
    }
    tray.waitForNoItem();
    return milliseconds;
}

} // namespace

void measureStartToTray(Table& table, const MeasuredPrograms& programs) {
    constexpr int warmUps = 3;
    constexpr int rounds = 100;
    const SessionBus sessionBus;
    TrayWatcher tray(sessionBus.address());
    Samples figure;
    Samples floor;
    for (int round = -warmUps; round < rounds; ++round) {
        if (round == 0)
            figure = floor = {}; // warm from here on
        if (round % 2 == 0)
            floor.add(start(programs.bareTray, sessionBus, tray));
        figure.add(start(programs.wakeloft, sessionBus, tray));
        if (round % 2 != 0)
            floor.add(start(programs.bareTray, sessionBus, tray));
    }
    table.limitRatio("start to tray icon read, warm", "ms", figure, floor, mostRatio);
}

} // namespace wakeloft
