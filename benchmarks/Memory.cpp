#include "Benchmarks.h"
#include "BusCalls.h"
#include "Fail.h"
#include "Program.h"

#include <fstream>
#include <map>
#include <thread>

namespace wakeloft {

namespace {

constexpr double mostRatio = 1.15;
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
    Samples resident, proportional, own, ownDirty;

    void add(const std::string& program, sd_bus* desktop) {
        const Program running({program});
        waitForTrayItem(desktop, running.id());
        std::this_thread::sleep_for(settling);
        running.requireRunning();
        const auto memory = readMemory(running.id());
        constexpr double megabyte = 1024;
        resident.add(memory.at("Rss") / megabyte);
        proportional.add(memory.at("Pss") / megabyte);
        own.add((memory.at("Private_Clean") + memory.at("Private_Dirty")) / megabyte);
        ownDirty.add(memory.at("Private_Dirty") / megabyte);
    }
};

} // namespace

void measureMemory(Table& table, const MeasuredPrograms& programs) {
    constexpr int rounds = 5;
    const BusPointer desktop = connectToDesktopBus();
    Memory figure;
    Memory floor;
    for (int round = 0; round < rounds; ++round) {
        floor.add(programs.bareTray, desktop.get());
        figure.add(programs.wakeloft, desktop.get());
    }
    table.limitRatio("memory, resident (RSS)", "MiB", figure.resident, floor.resident, mostRatio);
    table.limitRatio("memory, proportional (PSS)", "MiB", figure.proportional, floor.proportional, mostRatio);
    table.limitRatio("memory, private", "MiB", figure.own, floor.own, mostRatio);
    table.limitRatio("memory, private and dirty", "MiB", figure.ownDirty, floor.ownDirty, mostRatio);
}

} // namespace wakeloft
