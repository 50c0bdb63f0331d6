#include "session/AwakeDuration.h"

namespace wakeloft {

std::string AwakeDuration::label(const Locale& locale, const DurationFormatter& formatter) const {
    return formatter.units(HoursAndMinutes::rounding(seconds), DurationFormatter::Width::abbreviated, locale);
}

} // namespace wakeloft
