#pragma once

#include "Bus.h"
#include "session/Clocks.h"
#include "session/DeadlineScheduler.h"

namespace wakeloft {

/// One-shot timer on CLOCK_BOOTTIME, so that a deadline that passed during suspend fires right after it.
class TimerDeadlineScheduler final : public DeadlineScheduler {
  public:
    /// `event` and `dates` must outlive the scheduler.
    TimerDeadlineScheduler(sd_event* event, const DateProvider& dates) : event_(event), dates_(dates) {}

    void scheduleAt(Date date, std::function<void()> action) override;
    void cancel() override;

  private:
    sd_event* event_;
    const DateProvider& dates_;
    EventSource timer_;
    std::function<void()> action_;
};

} // namespace wakeloft
