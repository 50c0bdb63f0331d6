#pragma once

#include "lease/LidHelperService.h"

#include <optional>
#include <string>

namespace wakeloft {

/// The version of the app bundle in whose Contents/Helpers the executable lies, where that can be read.
std::optional<LidHelperService::Version> bundleVersionAround(const std::string& executablePath);

} // namespace wakeloft
