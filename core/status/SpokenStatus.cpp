#include "status/SpokenStatus.h"

#include <cmath>

namespace wakeloft {

SpokenStatus SpokenStatus::describing(bool isOn, std::optional<Seconds> remaining) {
    if (!isOn)
        return {Off{}};
    if (!remaining)
        return {On{}};
    if (*remaining >= 60)
        return {TimeLeft{AwakeDuration{std::floor(*remaining / 60) * 60}}};
    return {LessThanAMinuteLeft{}}; // also for NaN
}

} // namespace wakeloft
