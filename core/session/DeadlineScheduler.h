#pragma once

#include "support/Date.h"

#include <functional>

namespace wakeloft {

/// One pending one-shot deadline at the most. Main thread, where the action runs too.
/// A fired deadline is a hint: the clocks may have moved, so its owner judges again.
class DeadlineScheduler {
  public:
    virtual ~DeadlineScheduler() = default;

    /// Replaces any pending deadline.
    virtual void scheduleAt(Date date, std::function<void()> action) = 0;
    virtual void cancel() = 0;
};

/// How long a timer waits for a deadline at `date`: at least 50 ms, also for a past date or a NaN, so that an
/// overdue deadline fires promptly and never spins.
Seconds timerInterval(Date date, Date now);

} // namespace wakeloft
