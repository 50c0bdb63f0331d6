#include "PressedProgram.h"

#include <thread>

namespace wakeloft {

namespace {

constexpr auto aWhile = std::chrono::milliseconds(500);

} // namespace

PressedProgram::PressedProgram(const std::string& program, const Program::Environment& changes) {
    Program::Environment environment = sessionBus_.environment();
    environment.insert(environment.end(), changes.begin(), changes.end());
    program_.emplace(std::vector{program}, environment);
    tray_.waitForItem();
    std::this_thread::sleep_for(aWhile); // its start ends
}

std::pair<double, DrawingWatch::Drawing> PressedProgram::open() {
    const auto start = Clock::now();
    tray_.press();
    const auto drawing = drawings_.waitForDrawing();
    return {std::chrono::duration<double, std::milli>(drawing.end - start).count(), drawing};
}

void PressedProgram::close() {
    tray_.press();
    std::this_thread::sleep_for(aWhile); // what comes at once would be the press that closed it
}

Program::Environment emptyPanel(const DrawingWatch::Drawing& panel) {
    return {{"BARE_PANEL", std::to_string(panel.width) + 'x' + std::to_string(panel.height)}};
}

Program::Environment filledPanel(const DrawingWatch::Drawing& panel) {
    Program::Environment environment = emptyPanel(panel);
    environment.emplace_back("BARE_PANEL_FILLED", "1");
    return environment;
}

} // namespace wakeloft
