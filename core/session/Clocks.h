#pragma once

#include "support/Date.h"

namespace wakeloft {

/// The wall clock: what the user sees and what is saved. Readable from any thread, as the two below.
class DateProvider {
  public:
    virtual ~DateProvider() = default;
    [[nodiscard]] virtual Date now() const = 0;
};

/// Seconds since boot that stop while the machine sleeps.
class UptimeProvider {
  public:
    virtual ~UptimeProvider() = default;
    [[nodiscard]] virtual Seconds uptime() const = 0;
};

/// Seconds that go on while the machine sleeps and that no clock change moves.
class ContinuousTimeProvider {
  public:
    virtual ~ContinuousTimeProvider() = default;
    [[nodiscard]] virtual Seconds continuousTime() const = 0;
};

} // namespace wakeloft
