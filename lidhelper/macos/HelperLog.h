#pragma once

#include <string>

namespace wakeloft {

enum class LogPriority { notice, error };

/// Writes one line to the system's log, under the helper's label. Any thread.
void logLine(LogPriority priority, const std::string& line);

} // namespace wakeloft
