#pragma once

#include "lid/LidHelperFileWatch.h"

#include <optional>
#include <span>
#include <string>

namespace wakeloft {

/// The file that this process runs, as the kernel knows it: also when its path holds another one by now.
std::optional<LidHelperFileWatch::File> runningExecutable();
/// Where that file is now.
std::optional<std::string> executablePath();
/// The path that the process was started by; nothing for one that is not absolute.
std::optional<std::string> launchedPath(int process);
/// The same out of the kernel's record of the process's arguments.
std::optional<std::string> launchedPathIn(std::span<const char> argumentRecord);

/// What the status of the file at `path` says; nothing for one that cannot be examined.
std::optional<LidHelperFileWatch::Identity> identityOfFileAt(const std::string& path);

/// Watches for a helper of the same team at `path`. Nothing where something of this is not known: there is
/// nothing to compare then.
std::optional<LidHelperFileWatch>
watchForRunningHelper(const std::optional<std::string>& path,
                      std::optional<LidHelperFileWatch::File> startedFrom,
                      const std::optional<std::string>& runningCodeDirectoryHash,
                      const std::optional<std::string>& teamIdentifier);

} // namespace wakeloft
