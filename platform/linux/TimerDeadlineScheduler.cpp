#include "TimerDeadlineScheduler.h"

#include <utility>

namespace wakeloft {

void TimerDeadlineScheduler::scheduleAt(Date date, std::function<void()> action) {
    timer_.arm(timerInterval(date, dates_.now()), std::move(action));
}

void TimerDeadlineScheduler::cancel() {
    timer_.cancel();
}

} // namespace wakeloft
