#include "Benchmarks.h"
#include "BusCalls.h"
#include "DrawingWatch.h"
#include "Fail.h"
#include "TrayWatcher.h"

#include <optional>
#include <thread>

namespace wakeloft {

namespace {

constexpr int firstOpenings = 20;
constexpr int laterOpenings = 40;
constexpr auto aWhile = std::chrono::milliseconds(500);

/// A program in a tray of its own, pressed as a person would.
class PressedProgram {
  public:
    explicit PressedProgram(const std::string& program, const Program::Environment& changes = {}) {
        Program::Environment environment = sessionBus_.environment();
        environment.insert(environment.end(), changes.begin(), changes.end());
        program_.emplace(std::vector{program}, environment);
        tray_.waitForItem();
        std::this_thread::sleep_for(aWhile); // its start ends
    }

    /// From the press to the last that was drawn, in milliseconds, and how large that was.
    std::pair<double, DrawingWatch::Drawing> open() {
        const auto start = Clock::now();
        tray_.press();
        const auto drawing = drawings_.waitForDrawing();
        return {std::chrono::duration<double, std::milli>(drawing.end - start).count(), drawing};
    }

    void close() {
        tray_.press();
        std::this_thread::sleep_for(aWhile); // what comes at once would be the press that closed it
    }

    [[nodiscard]] const Program& program() const { return *program_; }

  private:
    DrawingWatch drawings_; // sees the windows that the program makes
    SessionBus sessionBus_;
    TrayWatcher tray_{sessionBus_.address()};
    std::optional<Program> program_;
};

/// The bare program opens an empty widget of the size of Wakeloft's window.
Program::Environment emptyPanel(const DrawingWatch::Drawing& panel) {
    return {{"BARE_PANEL", std::to_string(panel.width) + 'x' + std::to_string(panel.height)}};
}

/// The same with the toolkit's own widgets in it.
Program::Environment filledPanel(const DrawingWatch::Drawing& panel) {
    Program::Environment environment = emptyPanel(panel);
    environment.emplace_back("BARE_PANEL_FILLED", "1");
    return environment;
}

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
