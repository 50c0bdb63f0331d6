#pragma once

#include <string>

namespace wakeloft {

enum class LogPriority { error = 3, notice = 5, info = 6 };

/// Writes one line to the journal, or plainly to stderr where that is not connected to it. Whatever would not
/// print, or would begin another line, is replaced.
void logLine(LogPriority priority, std::string line);

} // namespace wakeloft
