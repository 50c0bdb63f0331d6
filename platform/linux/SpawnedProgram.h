#pragma once

#include "Bus.h"

#include <sys/types.h>

#include <string>
#include <vector>

namespace wakeloft {

/// The environment of this process as it is now, as NAME=VALUE entries.
std::vector<std::string> processEnvironment();

/// A program that was started beside this one, in a session of its own, and is buried when it ends. Ending
/// this object leaves it running, unwatched. Main thread.
class SpawnedProgram {
  public:
    /// Finds `command` along PATH and gives it `environment`. `ended` gets its exit code, 128 and more for a
    /// signal, and may end this object.
    static std::expected<std::unique_ptr<SpawnedProgram>, PlatformError>
    start(sd_event* event, const std::vector<std::string>& command,
          const std::vector<std::string>& environment, std::function<void(int)> ended);
    ~SpawnedProgram();
    SpawnedProgram(const SpawnedProgram&) = delete;
    SpawnedProgram& operator=(const SpawnedProgram&) = delete;

  private:
    SpawnedProgram(pid_t pid, std::function<void(int)> ended);
    int watch(sd_event* event);
    void hasEnded();

    pid_t pid_;
    std::function<void(int)> ended_;
    int descriptor_ = -1; ///< becomes readable when the program ends
    EventSource watch_;
};

} // namespace wakeloft
