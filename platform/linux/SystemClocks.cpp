#include "SystemClocks.h"

#include <ctime>

namespace wakeloft {

namespace {

// Cannot fail: the three clocks exist on every kernel that runs systemd.
Seconds read(clockid_t clock) {
    timespec time{};
    clock_gettime(clock, &time);
    return static_cast<Seconds>(time.tv_sec) + static_cast<Seconds>(time.tv_nsec) / 1e9;
}

} // namespace

Date SystemDateProvider::now() const {
    return {read(CLOCK_REALTIME)};
}

Seconds SystemUptimeProvider::uptime() const {
    return read(CLOCK_MONOTONIC);
}

Seconds SystemContinuousTimeProvider::continuousTime() const {
    return read(CLOCK_BOOTTIME);
}

} // namespace wakeloft
