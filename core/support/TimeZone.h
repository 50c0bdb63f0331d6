#pragma once

#include "support/Date.h"

namespace wakeloft {

/// Where the user's clocks stand against UTC.
class TimeZone {
  public:
    virtual ~TimeZone() = default;

    /// How far local time is ahead of UTC at `date`, summer time included.
    [[nodiscard]] virtual Seconds secondsFromUtcAt(Date date) const = 0;
};

} // namespace wakeloft
