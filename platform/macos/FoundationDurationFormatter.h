#pragma once

#include "session/DurationFormatter.h"

namespace wakeloft {

/// Durations in the user's language by Foundation's formatters.
class FoundationDurationFormatter final : public DurationFormatter {
  public:
    [[nodiscard]] std::string units(HoursAndMinutes duration, Width width,
                                    const Locale& locale) const override;
    [[nodiscard]] std::string time(std::int64_t seconds, TimePattern pattern,
                                   const Locale& locale) const override;
};

} // namespace wakeloft
