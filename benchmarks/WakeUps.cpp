#include "Benchmarks.h"
#include "BusCalls.h"
#include "Fail.h"
#include "Program.h"
#include "TrayWatcher.h"

#include <filesystem>
#include <fstream>
#include <map>
#include <thread>

namespace wakeloft {

namespace {

using std::chrono::seconds;
using SwitchesOfThreads = std::map<std::string, long>;

constexpr auto settling = seconds(40); // Qt's pool threads end after 30
constexpr auto minute = seconds(60);
constexpr auto controlTime = seconds(10);

SwitchesOfThreads readSwitches(const Program& program) {
    program.requireRunning();
    SwitchesOfThreads switches;
    for (const auto& thread :
         std::filesystem::directory_iterator("/proc/" + std::to_string(program.id()) + "/task")) {
        std::ifstream status(thread.path() / "status");
        for (std::string line; std::getline(status, line);)
            if (const auto colon = line.find("_ctxt_switches:"); colon != std::string::npos)
                switches[thread.path().filename()] += std::stol(line.substr(line.find(':') + 1));
    }
    if (switches.empty())
        fail("The context switches of a program cannot be read.");
    return switches;
}

/// Between two readings, in all threads. One that came or went has run at least once.
long switchesBetween(const SwitchesOfThreads& before, const SwitchesOfThreads& after) {
    long sum = 0;
    for (const auto& [thread, switches] : after) {
        const auto known = before.find(thread);
        sum += known == before.end() ? std::max(switches, 1L) : switches - known->second;
    }
    for (const auto& [thread, switches] : before)
        sum += after.contains(thread) ? 0 : 1;
    return sum;
}

double switchesIn(const Program& program, seconds time) {
    const auto before = readSwitches(program);
    std::this_thread::sleep_for(time);
    return static_cast<double>(switchesBetween(before, readSwitches(program)));
}

} // namespace

void measureWakeUps(Table& table, const MeasuredPrograms& programs) {
    // The first two in the desktop's own tray; a second instance of Wakeloft needs a session bus of its own.
    const Program bare({programs.bareTray});
    const Program atRest({programs.wakeloft});
    const BusPointer desktop = connectToDesktopBus();
    waitForTrayItem(desktop.get(), bare.id());
    waitForTrayItem(desktop.get(), atRest.id());
    const SessionBus sessionBus;
    TrayWatcher tray(sessionBus.address());
    const Program inSession({programs.wakeloft}, sessionBus.environment());
    tray.waitForItem();

    const BusPointer bus = connectTo(sessionBus.address());
    const BusPointer systemBus = connectToSystemBus();
    startSession(bus.get(), 7200);
    pressTrayItem(bus.get());
    std::this_thread::sleep_for(seconds(3)); // the countdown ticks
    pressTrayItem(bus.get());
    std::this_thread::sleep_for(settling);

    const auto bareBefore = readSwitches(bare);
    const auto atRestBefore = readSwitches(atRest);
    const auto inSessionBefore = readSwitches(inSession);
    std::this_thread::sleep_for(minute);
    const auto bareSwitches = static_cast<double>(switchesBetween(bareBefore, readSwitches(bare)));
    const auto atRestSwitches = static_cast<double>(switchesBetween(atRestBefore, readSwitches(atRest)));
    const auto inSessionSwitches =
        static_cast<double>(switchesBetween(inSessionBefore, readSwitches(inSession)));
    if (!blocksIdle(systemBus.get(), inSession.id()))
        fail("The session ended while it was measured.");
    if (blocksIdle(systemBus.get(), atRest.id()))
        fail("The program at rest is in a session.");
    pressTrayItem(bus.get());
    std::this_thread::sleep_for(seconds(1));
    const double openSwitches = switchesIn(inSession, controlTime);

    table.limit("context switches, 60 s at rest", "", atRestSwitches, bareSwitches, 0);
    table.limit("... 60 s in a session, panel closed", "", inSessionSwitches, bareSwitches, 0);
    table.require("... a second, panel open (control)", "/s",
                  openSwitches / static_cast<double>(controlTime.count()), 1);
}

} // namespace wakeloft
