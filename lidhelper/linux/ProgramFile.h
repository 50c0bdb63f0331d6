#pragma once

#include "lid/LidHelperFileWatch.h"
#include "support/Error.h"

#include <expected>
#include <optional>
#include <string>

namespace wakeloft {

/// The program that this process runs, as the kernel knows it: also when its file was replaced since.
struct RunningProgram {
    std::string path; ///< where it was started from
    LidHelperFileWatch::File file;
    std::string hash; ///< SHA-256, in lower-case hexadecimal

    static std::expected<std::string, PlatformError> findPath();
    static std::expected<RunningProgram, PlatformError> read(const std::string& path);
};

/// What a file's status says; a symbolic link is not followed. Nothing for what cannot be examined.
std::optional<LidHelperFileWatch::Identity> identityOfFile(const std::string& path);

/// The SHA-256 of a program that may take this one's place: a regular file that, like its folder, belongs to
/// root or to this process's own user (which is root too, but for a trial) and that nobody else may write.
/// Else why it may not.
std::expected<std::string, PlatformError> hashOfTrustedFile(const std::string& path);

} // namespace wakeloft
