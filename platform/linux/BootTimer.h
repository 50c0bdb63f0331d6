#pragma once

#include "Bus.h"
#include "lease/LidHelperLoop.h"

namespace wakeloft {

/// A one-shot timer on CLOCK_BOOTTIME, which goes on during suspend.
class BootTimer final : public OneShotTimer {
  public:
    /// `event` must outlive the timer.
    explicit BootTimer(sd_event* event) : event_(event) {}

    void arm(Seconds seconds, std::function<void()> action) override;
    void cancel() override;

  private:
    sd_event* event_;
    EventSource source_;
    std::function<void()> action_;
};

} // namespace wakeloft
