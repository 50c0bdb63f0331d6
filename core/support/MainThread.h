#pragma once

namespace wakeloft {

/// Stops the process with a message naming `operation` when called off the main thread, in every build:
/// a wrong thread is a programming error. The main thread is the one that ran static initialisation.
void requireMainThread(const char* operation);

} // namespace wakeloft
