#pragma once

#include "support/Error.h"

#include <expected>

namespace wakeloft {

/// The system's setting that keeps the machine from sleeping, also with the lid closed. Main thread.
class SystemSleepSetting {
  public:
    virtual ~SystemSleepSetting() = default;

    /// Gives up after `LidSleepLease::writeTimeout`.
    virtual std::expected<void, PlatformError> writeDisabled(bool disabled) = 0;
    /// True when sleep is disabled. Gives up after `LidSleepLease::readTimeout`.
    virtual std::expected<bool, PlatformError> readDisabled() = 0;
};

} // namespace wakeloft
