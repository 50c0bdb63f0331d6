#include "Benchmarks.h"
#include "Fail.h"
#include "PressedProgram.h"

namespace wakeloft {

namespace {

constexpr int firstOpenings = 20;
constexpr int laterOpenings = 40;

} // namespace

void measurePanelOpening(Table& table, const MeasuredPrograms& programs) {
    constexpr double mostRatio = 1.5;
    PressedProgram wakeloft(programs.wakeloft);
    const auto panel = wakeloft.open().second;
    wakeloft.close();
    if (panel.width < 260 || panel.height < 200)
        fail("What was opened is no panel.");

    Samples first, firstFloor, firstEmpty;
    const auto firstTime = [](Samples& samples, const std::string& program,
                              const Program::Environment& changes) {
        samples.add(PressedProgram(program, changes).open().first);
    };
    for (int round = 0; round < firstOpenings; ++round) {
        byTurns(
            round, [&] { firstTime(first, programs.wakeloft, {}); },
            [&] { firstTime(firstFloor, programs.bareTray, filledPanel(panel)); });
        firstTime(firstEmpty, programs.bareTray, emptyPanel(panel));
    }
    table.limitRatio("panel opened, first time", "ms", first, firstFloor, mostRatio);
    table.show("... over an empty widget", "ms", first, firstEmpty);

    PressedProgram filled(programs.bareTray, filledPanel(panel));
    PressedProgram empty(programs.bareTray, emptyPanel(panel));
    for (PressedProgram* bare : {&filled, &empty}) {
        bare->open();
        bare->close();
    }
    Samples later, laterFloor, laterEmpty;
    const auto laterTime = [](Samples& samples, PressedProgram& pressed) {
        samples.add(pressed.open().first);
        pressed.close();
    };
    for (int round = 0; round < laterOpenings; ++round) {
        byTurns(round, [&] { laterTime(later, wakeloft); }, [&] { laterTime(laterFloor, filled); });
        laterTime(laterEmpty, empty);
    }
    table.limitRatio("... each later time", "ms", later, laterFloor, mostRatio);
    table.show("... over an empty widget", "ms", later, laterEmpty);
}

} // namespace wakeloft
