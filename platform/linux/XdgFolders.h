#pragma once

#include "support/Error.h"

#include <expected>
#include <filesystem>
#include <vector>

namespace wakeloft {

/// The user's home folder, and where programs keep their settings below it. The error is a sentence.
std::expected<std::filesystem::path, PlatformError> homeFolder();
std::expected<std::filesystem::path, PlatformError> configFolder();

/// Where the system keeps settings for all users, the most important first.
std::vector<std::filesystem::path> systemConfigFolders();

} // namespace wakeloft
