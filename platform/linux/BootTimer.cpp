#include "BootTimer.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <utility>

namespace wakeloft {

void BootTimer::arm(Seconds seconds, std::function<void()> action) {
    cancel();
    constexpr Seconds longest = 1e11; // beyond any deadline; keeps the microseconds a number
    constexpr std::uint64_t accuracyMicroseconds = 1;
    const auto fired = [](sd_event_source*, std::uint64_t, void* userdata) {
        auto* self = static_cast<BootTimer*>(userdata);
        if (const auto run = std::exchange(self->action_, nullptr)) // it may arm again
            run();
        return 0;
    };
    const auto microseconds = static_cast<std::uint64_t>(std::clamp(seconds, 0.0, longest) * 1e6);
    sd_event_source* source = nullptr;
    const int result = sd_event_add_time_relative(event_, &source, CLOCK_BOOTTIME, microseconds,
                                                  accuracyMicroseconds, fired, this);
    if (result < 0) {
        // A session or a lease without its timer would never end; the kernel ends both with the process.
        std::fprintf(stderr, "Wakeloft: %s\n",
                     busFailure("A timer cannot be armed", result).description.c_str());
        std::abort();
    }
    source_.reset(source);
    action_ = std::move(action);
}

void BootTimer::cancel() {
    source_.reset();
    action_ = nullptr;
}

} // namespace wakeloft
