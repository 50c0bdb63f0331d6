#pragma once

#include "FileChanges.h"
#include "ProgramFile.h"

#include <functional>
#include <optional>
#include <string>

namespace wakeloft {

/// Follows the file that the helper was started from, and tells what is there now. Main thread.
class ProgramWatch {
  public:
    /// `path` is where it was started from; `log` takes one line.
    ProgramWatch(sd_event* event, std::string path,
                 std::function<void(const LidHelperFileWatch::Finding&)> found,
                 std::function<void(const std::string&)> log);

    /// Begins to follow the file. To be called before the process connects to a bus: when it is killed, the
    /// kernel closes what was opened last first, and takes some time over this. Its name must not last so
    /// long.
    std::expected<void, PlatformError> follow();
    /// From then on `found` is told each change of the finding, also now if the file is not the running one.
    void start(const RunningProgram& program);

  private:
    void look();
    void tell(const LidHelperFileWatch::Finding& finding);

    std::string path_;
    std::string distrust_; ///< why the file judged last is no helper
    std::function<void(const LidHelperFileWatch::Finding&)> found_;
    std::function<void(const std::string&)> log_;
    std::optional<LidHelperFileWatch> watch_; ///< once the own program is known
    FileChanges changes_;
};

} // namespace wakeloft
