#pragma once

#include "lease/SystemSleepSetting.h"

#include <functional>
#include <string>
#include <utility>

namespace wakeloft {

/// The "disablesleep" setting. `pmset` writes it, which takes root, and tells nothing by its exit code; so a
/// write counts once the kernel has taken it over. A program that hangs is killed. Main thread, which waits.
class PmsetSleepSetting final : public SystemSleepSetting {
  public:
    using Read = std::function<std::expected<bool, PlatformError>()>;

    /// `read` tells what the kernel goes by, at once.
    explicit PmsetSleepSetting(Read read, std::string program = "/usr/bin/pmset")
        : read_(std::move(read)), program_(std::move(program)) {}

    std::expected<void, PlatformError> writeDisabled(bool disabled) override;
    std::expected<bool, PlatformError> readDisabled() override { return read_(); }

  private:
    Read read_;
    std::string program_;
};

} // namespace wakeloft
