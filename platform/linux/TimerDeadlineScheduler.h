#pragma once

#include "BootTimer.h"
#include "session/Clocks.h"
#include "session/DeadlineScheduler.h"

namespace wakeloft {

/// One-shot timer on CLOCK_BOOTTIME, so that a deadline that passed during suspend fires right after it.
class TimerDeadlineScheduler final : public DeadlineScheduler {
  public:
    /// `event` and `dates` must outlive the scheduler.
    TimerDeadlineScheduler(sd_event* event, const DateProvider& dates) : dates_(dates), timer_(event) {}

    void scheduleAt(Date date, std::function<void()> action) override;
    void cancel() override;

  private:
    const DateProvider& dates_;
    BootTimer timer_;
};

} // namespace wakeloft
