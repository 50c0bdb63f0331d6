#pragma once

#include "support/Error.h"

#include <expected>

namespace wakeloft {

/// Whether the kernel lets the machine sleep right now, from the registry: a call of microseconds that needs
/// no privilege. It follows a change of the setting a moment later.
std::expected<bool, PlatformError> readSleepDisabledProperty();

} // namespace wakeloft
