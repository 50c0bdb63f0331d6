#pragma once

#include "FileChanges.h"
#include "SystemClocks.h"
#include "TimerDeadlineScheduler.h"

#include <functional>
#include <optional>
#include <string>

namespace wakeloft::rig {

enum class LeaseState { held, lapsed, missing };

/// Follows a lease file: told of each change by the kernel, and of the lease's end by one timer.
class LeaseFileWatch {
  public:
    /// `changed` is told at `start()` and after each change of the state; `failed` when changes can no longer
    /// be followed. `event` must outlive the watch.
    LeaseFileWatch(sd_event* event, std::string path, std::function<void(LeaseState)> changed,
                   std::function<void(const PlatformError&)> failed);
    LeaseFileWatch(const LeaseFileWatch&) = delete;
    LeaseFileWatch& operator=(const LeaseFileWatch&) = delete;
    ~LeaseFileWatch() = default;

    std::expected<void, PlatformError> start();
    /// Judges again: also to be called when the clock was set.
    void look();

  private:
    std::string path_;
    std::function<void(LeaseState)> changed_;
    SystemDateProvider dates_;
    TimerDeadlineScheduler timer_;
    std::optional<LeaseState> told_;
    FileChanges changes_;
};

} // namespace wakeloft::rig
