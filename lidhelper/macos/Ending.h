#pragma once

#include <functional>

namespace wakeloft {

/// Has `received` called on the main queue when the process is asked to end by SIGTERM, or at a terminal by
/// SIGINT. The time limit of its end starts with the signal, whatever the main thread is doing. Once.
void watchTerminationSignals(std::function<void()> received);

/// The process ends within `LidHelperService::exitTimeout`, in good order or not. Any thread.
void limitEnding();

} // namespace wakeloft
