#pragma once

#include "support/Error.h"

#include <cstddef>
#include <expected>
#include <filesystem>
#include <optional>
#include <string>

namespace wakeloft {

/// More than this is neither read nor written.
inline constexpr std::size_t mostFileBytes = 1'048'576;

/// The whole file, nothing when there is none. A folder, a device or too large a file is an error.
std::expected<std::optional<std::string>, PlatformError> readWholeFile(const std::filesystem::path& path);

/// What to do where a link is found in a file's place.
enum class AtLink { followIt, replaceIt };

/// Replaces the file at `path` by one with `text`, making its folder where missing: after a crash or a full
/// disk there is the old file or the new one, whole. Readable by the user alone.
std::expected<void, PlatformError> replaceFile(const std::filesystem::path& path, const std::string& text,
                                               AtLink atLink = AtLink::followIt);

} // namespace wakeloft
