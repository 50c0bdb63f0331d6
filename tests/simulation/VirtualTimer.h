#pragma once

#include "lease/LidHelperLoop.h"
#include "support/Lifetime.h"
#include "twins/LeaseTwins.h"

#include <optional>

namespace wakeloft {

/// The app's timers and the helper's, on the boot-time clock.
class VirtualTimer final : public DeadlineScheduler, public OneShotTimer {
  public:
    explicit VirtualTimer(ManualRunLoop& time) : time_(time) {}

    void scheduleAt(Date date, std::function<void()> action) override {
        arm(timerInterval(date, time_.clocks.now()), std::move(action));
    }
    void arm(Seconds seconds, std::function<void()> action) override {
        time_.performCountingSleep(seconds, pending_.emplace().guard(std::move(action)));
    }
    void cancel() override { pending_.reset(); }

  private:
    ManualRunLoop& time_;
    std::optional<Lifetime> pending_;
};

} // namespace wakeloft
