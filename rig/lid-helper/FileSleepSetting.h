#pragma once

#include "AtomicFile.h"
#include "lease/LidSleepLeaseKeeper.h"
#include "lease/RigLeaseFile.h"

#include <cerrno>
#include <optional>
#include <string>
#include <unistd.h>
#include <utility>

namespace wakeloft::rig {

/// A sleep setting in memory. While it is on, a file records the end of the lease that is honoured; removing
/// the file is turning the setting off from elsewhere, and a file that is there already is somebody else's
/// setting.
class FileSleepSetting final : public SystemSleepSetting {
  public:
    explicit FileSleepSetting(std::string path) : path_(std::move(path)) {}

    std::expected<void, PlatformError> writeDisabled(bool disabled) override {
        isOn_ = disabled;
        // Turned on, the file appears with the first lease that is recorded.
        if (disabled || unlink(path_.c_str()) == 0 || errno == ENOENT) {
            isRecorded_ = false;
            return {};
        }
        return std::unexpected(PlatformError{"errno", errno, "The lease file cannot be removed."});
    }

    std::expected<bool, PlatformError> readDisabled() override {
        const bool exists = access(path_.c_str(), F_OK) == 0;
        return isOn_ && !isRecorded_ ? true : exists;
    }

    /// Writes the lease's end, unless it is there already.
    std::expected<void, PlatformError> record(std::optional<Date> leaseExpiry) {
        if (!isOn_ || !leaseExpiry || (isRecorded_ && recorded_ == *leaseExpiry))
            return {};
        recorded_ = *leaseExpiry;
        isRecorded_ = true;
        return replaceFile(path_, RigLeaseFile::encode(*leaseExpiry) + "\n");
    }

  private:
    std::string path_;
    bool isOn_ = false;
    bool isRecorded_ = false;
    Date recorded_;
};

} // namespace wakeloft::rig
