#pragma once

#include "session/Clocks.h"
#include "session/DeadlineScheduler.h"

#include <memory>

namespace wakeloft {

/// A timer on the main run loop, which also fires while a menu is open. It stands still during sleep and
/// fires after it.
class TimerDeadlineScheduler final : public DeadlineScheduler {
  public:
    /// `dates` must outlive the scheduler.
    explicit TimerDeadlineScheduler(const DateProvider& dates);
    TimerDeadlineScheduler(const TimerDeadlineScheduler&) = delete;
    TimerDeadlineScheduler& operator=(const TimerDeadlineScheduler&) = delete;
    ~TimerDeadlineScheduler() override;

    void scheduleAt(Date date, std::function<void()> action) override;
    void cancel() override;

  private:
    struct Timer;
    const DateProvider& dates_;
    std::unique_ptr<Timer> timer_; ///< a fired one stays until the next call
};

} // namespace wakeloft
