#pragma once

#include "DrawingWatch.h"
#include "Program.h"
#include "TrayWatcher.h"

#include <optional>
#include <string>
#include <utility>

namespace wakeloft {

/// A program in a tray of its own, pressed as a person would.
class PressedProgram {
  public:
    explicit PressedProgram(const std::string& program, const Program::Environment& changes = {});

    /// From the press to the last that was drawn, in milliseconds, and how large that was.
    std::pair<double, DrawingWatch::Drawing> open();
    void close();

    [[nodiscard]] const Program& program() const { return *program_; }

  private:
    DrawingWatch drawings_; // sees the windows that the program makes
    SessionBus sessionBus_;
    TrayWatcher tray_{sessionBus_.address()};
    std::optional<Program> program_;
};

/// Has the bare tray open an empty widget of the size of Wakeloft's window.
Program::Environment emptyPanel(const DrawingWatch::Drawing& panel);
/// The same with the toolkit's own widgets in it.
Program::Environment filledPanel(const DrawingWatch::Drawing& panel = {
                                     .end = {}, .width = 300, .height = 484});

} // namespace wakeloft
