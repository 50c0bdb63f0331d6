#pragma once

#include "session/Clocks.h"

namespace wakeloft {

/// CLOCK_REALTIME.
class SystemDateProvider final : public DateProvider {
  public:
    [[nodiscard]] Date now() const override;
};

/// CLOCK_MONOTONIC, which stops during suspend.
class SystemUptimeProvider final : public UptimeProvider {
  public:
    [[nodiscard]] Seconds uptime() const override;
};

/// CLOCK_BOOTTIME, which goes on during suspend and is never set.
class SystemContinuousTimeProvider final : public ContinuousTimeProvider {
  public:
    [[nodiscard]] Seconds continuousTime() const override;
};

} // namespace wakeloft
