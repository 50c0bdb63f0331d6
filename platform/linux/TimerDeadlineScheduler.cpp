#include "TimerDeadlineScheduler.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <utility>

namespace wakeloft {

void TimerDeadlineScheduler::scheduleAt(Date date, std::function<void()> action) {
    cancel();
    constexpr Seconds longest = 1e11; // beyond any deadline; keeps the microseconds a number
    constexpr std::uint64_t accuracyMicroseconds = 1;
    const Seconds interval = std::min(timerInterval(date, dates_.now()), longest);
    const auto fired = [](sd_event_source*, std::uint64_t, void* userdata) {
        auto* self = static_cast<TimerDeadlineScheduler*>(userdata);
        if (const auto run = std::exchange(self->action_, nullptr)) // it may schedule again
            run();
        return 0;
    };
    sd_event_source* source = nullptr;
    const int result = sd_event_add_time_relative(event_, &source, CLOCK_BOOTTIME,
                                                  static_cast<std::uint64_t>(interval * 1e6),
                                                  accuracyMicroseconds, fired, this);
    if (result < 0) {
        // A session without its timer would never end, so there is no going on.
        std::fprintf(stderr, "Wakeloft: %s\n",
                     busFailure("A timer cannot be armed", result).description.c_str());
        std::abort();
    }
    timer_.reset(source);
    action_ = std::move(action);
}

void TimerDeadlineScheduler::cancel() {
    timer_.reset();
    action_ = nullptr;
}

} // namespace wakeloft
