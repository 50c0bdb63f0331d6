#include "Benchmarks.h"
#include "BusCalls.h"
#include "Fail.h"
#include "PressedProgram.h"
#include "RunningHelper.h"
#include "TrayWatcher.h"

#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <map>
#include <thread>

namespace wakeloft {

namespace {

using std::chrono::seconds;
using SwitchesOfThreads = std::map<std::string, long>;

constexpr auto minute = seconds(60);
constexpr auto controlTime = seconds(10);
constexpr auto aWhile = seconds(1);

/// How often the program's main thread waited for something, and woke.
double mainThreadWaits(const Program& program) {
    program.requireRunning();
    std::ifstream status("/proc/" + std::to_string(program.id()) + "/status");
    const std::string name = "voluntary_ctxt_switches:";
    for (std::string line; std::getline(status, line);)
        if (line.starts_with(name))
            return std::stod(line.substr(name.size()));
    fail("The wake-ups of a program cannot be read.");
}

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

/// Counts a program's switches from now on.
class SwitchCount {
  public:
    explicit SwitchCount(const Program& program) : program_(program), before_(readSwitches(program)) {}

    [[nodiscard]] double soFar() const {
        return static_cast<double>(switchesBetween(before_, readSwitches(program_)));
    }

  private:
    const Program& program_;
    SwitchesOfThreads before_;
};

constexpr int renewals = 6;

struct Switches {
    double helper;
    double bareService;
};

/// For a minute a client renews its lease as the app does, and calls the bare service as often.
Switches switchesWithLease(const RunningHelper& running) {
    constexpr auto interval = minute / renewals;
    const LeaseClient client(geteuid());
    client.renew();
    std::this_thread::sleep_for(aWhile); // the login manager tells of the lock
    const SwitchCount helper(running.helper());
    const SwitchCount bareService(running.bareService());
    for (int number = 0; number < renewals; ++number) {
        client.renew();
        client.pingBareService();
        std::this_thread::sleep_for(interval);
    }
    const Switches switches{helper.soFar(), bareService.soFar()};
    client.revoke();
    return switches;
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
    PressedProgram bareCounting(programs.bareTray, filledPanel());
    const RunningHelper running(programs);

    const BusPointer bus = connectTo(sessionBus.address());
    const BusPointer systemBus = connectToSystemBus();
    startSession(bus.get(), 7200);
    pressTrayItem(bus.get());
    pressTrayItem(desktop.get());
    std::this_thread::sleep_for(seconds(3)); // the countdown ticks
    pressTrayItem(bus.get());
    pressTrayItem(desktop.get());
    const auto withLease = switchesWithLease(running); // meanwhile Qt's pool threads end, after 30 s
    std::this_thread::sleep_for(aWhile);

    const SwitchCount bareCount(bare);
    const SwitchCount atRestCount(atRest);
    const SwitchCount inSessionCount(inSession);
    const SwitchCount helperCount(running.helper());
    const SwitchCount bareServiceCount(running.bareService());
    std::this_thread::sleep_for(minute);
    const double bareSwitches = bareCount.soFar();
    const double atRestSwitches = atRestCount.soFar();
    const double inSessionSwitches = inSessionCount.soFar();
    const double helperSwitches = helperCount.soFar();
    const double bareServiceSwitches = bareServiceCount.soFar();
    if (!blocks(systemBus.get(), "idle", inSession.id()))
        fail("The session ended while it was measured.");
    if (blocks(systemBus.get(), "idle", atRest.id()))
        fail("The program at rest is in a session.");
    bareCounting.open();
    pressTrayItem(bus.get()); // with the focus, or it would close again
    std::this_thread::sleep_for(aWhile);
    const SwitchCount openCount(inSession);
    const double waits = mainThreadWaits(inSession);
    const double bareWaits = mainThreadWaits(bareCounting.program());
    std::this_thread::sleep_for(controlTime);
    const double openSwitches = openCount.soFar();
    const double waitsOpen = (mainThreadWaits(inSession) - waits) / static_cast<double>(controlTime.count());
    const double bareWaitsOpen =
        (mainThreadWaits(bareCounting.program()) - bareWaits) / static_cast<double>(controlTime.count());

    table.limit("context switches, 60 s, panel used", "", atRestSwitches, bareSwitches, 0);
    table.limit("... 60 s in a session, panel closed", "", inSessionSwitches, bareSwitches, 0);
    table.require("... a second, panel open (control)", "/s",
                  openSwitches / static_cast<double>(controlTime.count()), 1);
    table.limit("... its main thread's wake-ups", "/s", waitsOpen, bareWaitsOpen, 1.2 * bareWaitsOpen);
    table.limit("helper, 60 s at rest", "", helperSwitches, bareServiceSwitches, 0);
    table.limit("... 60 s, lease renewed 6 times", "", withLease.helper, withLease.bareService,
                withLease.bareService + renewals); // at most one more for each
    table.require("... a renewal (control)", "", withLease.helper / renewals, 1);
}

} // namespace wakeloft
