#pragma once

#include "session/Clocks.h"

namespace wakeloft {

class SystemDateProvider final : public DateProvider {
  public:
    [[nodiscard]] Date now() const override;
};

/// The process information's, which stops during sleep.
class SystemUptimeProvider final : public UptimeProvider {
  public:
    [[nodiscard]] Seconds uptime() const override;
};

/// CLOCK_MONOTONIC, which on this system goes on during sleep and is never set.
class SystemContinuousTimeProvider final : public ContinuousTimeProvider {
  public:
    [[nodiscard]] Seconds continuousTime() const override;
};

} // namespace wakeloft
