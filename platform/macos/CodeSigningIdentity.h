#pragma once

#include <optional>
#include <string>

namespace wakeloft {

/// What the system knows of a program's signature. Nothing for what is not signed or cannot be read. Any
/// thread.
struct CodeSigningIdentity {
    /// Of the running process.
    static std::optional<std::string> currentTeamIdentifier();
    /// Of the running process, as 40 lower-case hexadecimal digits.
    static std::optional<std::string> currentCodeDirectoryHash();
    /// Of the running process, as text.
    static std::optional<std::string> currentDesignatedRequirement();

    /// Of the file at `path`, where its signature is valid and meets `requirement`. Reads the whole file.
    static std::optional<std::string> codeDirectoryHashOfCodeAt(const std::string& path,
                                                                const std::string& requirement);
};

} // namespace wakeloft
