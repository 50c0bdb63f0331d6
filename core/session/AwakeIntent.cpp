#include "session/AwakeIntent.h"

#include <cmath>

namespace wakeloft {

bool AwakeIntent::isUsable(Date date) {
    return std::isfinite(date.secondsSince1970) && date <= Date::distantFuture();
}

std::optional<Date> AwakeIntent::deadlineAfter(Seconds seconds, Date now) {
    const Date deadline = now + seconds; // not finite when `seconds` is not
    return isUsable(deadline) ? std::optional(deadline) : std::nullopt;
}

std::optional<Date> StoredAwakeIntent::deadline() const {
    if (const auto* intent = std::get_if<AwakeIntent>(&value))
        if (const auto* until = std::get_if<AwakeIntent::Until>(&intent->value))
            return until->date;
    return std::nullopt;
}

} // namespace wakeloft
