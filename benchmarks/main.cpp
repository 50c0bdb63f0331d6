#include "Benchmarks.h"
#include "Fail.h"

#include <algorithm>
#include <functional>
#include <string>
#include <vector>

// wakeloft-benchmarks WAKELOFT BARE-TRAY [MEASUREMENT...]: exits with 1 when a limit is exceeded, with 2 when
// something could not be measured.
int main(int argc, char** argv) {
    using namespace wakeloft;
    const std::vector<std::string> arguments(argv + 1, argv + argc);
    if (arguments.size() < 2)
        fail("usage: wakeloft-benchmarks WAKELOFT BARE-TRAY [click|action|start|memory|wake-ups]...");
    const std::vector<std::string> chosen(arguments.begin() + 2, arguments.end());
    const MeasuredPrograms programs{arguments[0], arguments[1]};
    const std::vector<std::pair<std::string, std::function<void(Table&)>>> measurements = {
        {"click", [](Table& table) { measureClickToHold(table); }},
        {"action", [&](Table& table) { measureActionToHold(table, programs); }},
        {"start", [&](Table& table) { measureStartToTray(table, programs); }},
        {"memory", [&](Table& table) { measureMemory(table, programs); }},
        {"wake-ups", [&](Table& table) { measureWakeUps(table, programs); }},
    };
    for (const auto& name : chosen)
        if (std::ranges::none_of(measurements, [&](const auto& each) { return each.first == name; }))
            fail("There is no measurement \"" + name + "\".");
    Table table;
    for (const auto& [name, measure] : measurements)
        if (chosen.empty() || std::ranges::find(chosen, name) != chosen.end())
            measure(table);
    return table.isWithinLimits() ? EXIT_SUCCESS : EXIT_FAILURE;
}
