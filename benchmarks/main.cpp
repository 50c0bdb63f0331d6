#include "Benchmarks.h"
#include "Fail.h"

#include <algorithm>
#include <functional>
#include <string>
#include <vector>

namespace wakeloft {

void byTurns(int round, const std::function<void()>& figure, const std::function<void()>& floor) {
    const bool isFloorFirst = round % 2 == 0;
    if (isFloorFirst)
        floor();
    figure();
    if (!isFloorFirst)
        floor();
}

} // namespace wakeloft

// wakeloft-benchmarks WAKELOFT BARE-TRAY LID-HELPER BARE-SERVICE [MEASUREMENT...]: exits with 1 when a limit
// is exceeded, with 2 when something could not be measured.
int main(int argc, char** argv) {
    using namespace wakeloft;
    const std::vector<std::string> arguments(argv + 1, argv + argc);
    if (arguments.size() < 4)
        fail("usage: wakeloft-benchmarks WAKELOFT BARE-TRAY LID-HELPER BARE-SERVICE [MEASUREMENT]...");
    const std::vector<std::string> chosen(arguments.begin() + 4, arguments.end());
    const MeasuredPrograms programs{arguments[0], arguments[1], arguments[2], arguments[3]};
    const std::vector<std::pair<std::string, std::function<void(Table&)>>> measurements = {
        {"click", [](Table& table) { measureClickToHold(table); }},
        {"action", [&](Table& table) { measureActionToHold(table, programs); }},
        {"renewal", [&](Table& table) { measureRenewals(table, programs); }},
        {"start", [&](Table& table) { measureStartToTray(table, programs); }},
        {"helper-start", [&](Table& table) { measureStartToName(table, programs); }},
        {"panel", [&](Table& table) { measurePanelOpening(table, programs); }},
        {"memory", [&](Table& table) { measureMemory(table, programs); }},
        {"helper-memory", [&](Table& table) { measureHelperMemory(table, programs); }},
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
