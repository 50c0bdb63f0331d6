#include "SystemTimeZone.h"

#include <cmath>
#include <ctime>

namespace wakeloft {

Seconds SystemTimeZone::secondsFromUtcAt(Date date) const {
    tzset(); // it may have been changed while the program runs
    const auto moment = static_cast<time_t>(std::floor(date.secondsSince1970));
    tm local{};
    // It fails for years that no number holds, of which no clock tells.
    return localtime_r(&moment, &local) == nullptr ? 0 : static_cast<Seconds>(local.tm_gmtoff);
}

} // namespace wakeloft
