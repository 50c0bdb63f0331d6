#pragma once

#include "support/TimeZone.h"

namespace wakeloft {

/// The user's time zone. Main thread.
class SystemTimeZone final : public TimeZone {
  public:
    [[nodiscard]] Seconds secondsFromUtcAt(Date date) const override;
};

} // namespace wakeloft
