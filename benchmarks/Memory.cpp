#include "Benchmarks.h"
#include "BusCalls.h"
#include "Fail.h"
#include "PressedProgram.h"
#include "RunningHelper.h"

#include <unistd.h>

#include <fstream>
#include <map>
#include <thread>

namespace wakeloft {

namespace {

constexpr int rounds = 5;
constexpr auto settling = std::chrono::seconds(3);

/// The kernel's account of a process, in kB.
std::map<std::string, double> readMemory(pid_t process) {
    std::ifstream file("/proc/" + std::to_string(process) + "/smaps_rollup");
    std::map<std::string, double> memory;
    std::string line;
    std::getline(file, line); // the range of addresses
    std::string name;
    double size = 0;
    while (file >> name >> size >> line)
        memory[name.substr(0, name.size() - 1)] = size;
    if (memory["Rss"] <= 0)
        fail("The memory of process " + std::to_string(process) + " cannot be read.");
    return memory;
}

struct Memory {
    Samples resident, proportional, withoutOwnFile, own, ownDirty;

    void add(const Program& program) {
        program.requireRunning();
        const auto memory = readMemory(program.id());
        constexpr double megabyte = 1024;
        resident.add(memory.at("Rss") / megabyte);
        proportional.add(memory.at("Pss") / megabyte);
        withoutOwnFile.add((memory.at("Pss") - memory.at("Private_Clean")) / megabyte);
        own.add((memory.at("Private_Clean") + memory.at("Private_Dirty")) / megabyte);
        ownDirty.add(memory.at("Private_Dirty") / megabyte);
    }
};

} // namespace

void measureMemory(Table& table, const MeasuredPrograms& programs) {
    constexpr double mostRatio = 1.15;
    constexpr double mostRatioUsed = 1.25; // with the pages of ICU's data that word lengths of time
    const BusPointer desktop = connectToDesktopBus();
    const auto measure = [&](const std::string& program, Memory& memory) {
        const Program running({program});
        waitForTrayItem(desktop.get(), running.id());
        std::this_thread::sleep_for(settling);
        memory.add(running);
    };
    const auto measureUsed = [](const std::string& program, Memory& memory) {
        PressedProgram running(program, filledPanel());
        running.open();
        running.close();
        std::this_thread::sleep_for(settling);
        memory.add(running.program());
    };
    Memory figure, floor, used, usedFloor;
    for (int round = 0; round < rounds; ++round) {
        measure(programs.bareTray, floor);
        measure(programs.wakeloft, figure);
        measureUsed(programs.bareTray, usedFloor);
        measureUsed(programs.wakeloft, used);
    }
    table.limitRatio("memory, resident (RSS)", "MiB", figure.resident, floor.resident, mostRatio);
    table.limitRatio("memory, proportional (PSS)", "MiB", figure.proportional, floor.proportional, mostRatio);
    table.limitRatio("memory, private", "MiB", figure.own, floor.own, mostRatio);
    table.limitRatio("memory, private and dirty", "MiB", figure.ownDirty, floor.ownDirty, mostRatio);
    table.limitRatio("panel used, resident (RSS)", "MiB", used.resident, usedFloor.resident, mostRatioUsed);
    table.limitRatio("... proportional (PSS)", "MiB", used.proportional, usedFloor.proportional,
                     mostRatioUsed);
    table.limitRatio("... private and dirty", "MiB", used.ownDirty, usedFloor.ownDirty, mostRatio);
}

void measureHelperMemory(Table& table, const MeasuredPrograms& programs) {
    constexpr double mostRatio = 1.3;
    constexpr double mostRatioWithOwnFile = 2;
    Memory figure;
    Memory floor;
    for (int round = 0; round < rounds; ++round) {
        const RunningHelper running(programs);
        {
            const LeaseClient client(geteuid());
            client.renew(); // both have had work
            client.revoke();
        }
        std::this_thread::sleep_for(settling);
        floor.add(running.bareService());
        figure.add(running.helper());
    }
    table.limitRatio("helper's memory, resident (RSS)", "MiB", figure.resident, floor.resident, mostRatio);
    table.limitRatio("... proportional (PSS)", "MiB", figure.proportional, floor.proportional,
                     mostRatioWithOwnFile);
    table.limitRatio("... PSS without its own file", "MiB", figure.withoutOwnFile, floor.withoutOwnFile,
                     mostRatio);
    table.limitRatio("... private and dirty", "MiB", figure.ownDirty, floor.ownDirty, mostRatio);
}

} // namespace wakeloft
