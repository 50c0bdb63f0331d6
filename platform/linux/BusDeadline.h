#pragma once

#include "Bus.h"
#include "support/Date.h"

#include <chrono>
#include <expected>
#include <string_view>

namespace wakeloft {

/// The end of an operation's time, in uptime, which all of its calls share.
class BusDeadline {
  public:
    /// That many seconds from now.
    explicit BusDeadline(Seconds seconds);

    [[nodiscard]] bool isOver() const { return Clock::now() >= end_; }
    /// As `callBus`, but within the time that is left.
    std::expected<BusMessage, PlatformError> call(sd_bus* bus, sd_bus_message* message,
                                                  std::string_view what) const;

  private:
    using Clock = std::chrono::steady_clock;
    Clock::time_point end_;
};

} // namespace wakeloft
