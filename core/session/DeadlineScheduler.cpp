#include "session/DeadlineScheduler.h"

namespace wakeloft {

Seconds timerInterval(Date date, Date now) {
    constexpr Seconds floor = 0.05;
    const Seconds interval = date - now;
    return interval > floor ? interval : floor; // the order matters: a NaN is not greater
}

} // namespace wakeloft
