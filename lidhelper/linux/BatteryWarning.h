#pragma once

#include "Bus.h"

#include <functional>
#include <string>

namespace wakeloft {

/// Whether the battery is about to run out, so that nothing may stand in the way of the system's own last
/// measure. Told by UPower; where there is none, read from the kernel at each `look()`. Main thread.
class BatteryWarning {
  public:
    /// `changed` is told while this is active, in a later turn. `supplies` is the kernel's folder of power
    /// supplies. `bus` must outlive the warning.
    BatteryWarning(sd_bus* bus, std::function<void(bool isCritical)> changed,
                   std::string supplies = "/sys/class/power_supply");

    /// Nothing is followed, and nothing wakes the process, while this is not active.
    void setActive(bool isActive, const std::function<void(const PlatformError&)>& failed);
    /// Reads the kernel's figures where nobody tells them.
    void look();
    [[nodiscard]] bool isCritical() const { return isCritical_; }

  private:
    std::expected<void, PlatformError> follow();
    void ask();
    void answered(sd_bus_message* reply);
    void judge(bool isCritical);

    sd_bus* bus_;
    std::function<void(bool)> changed_;
    std::string supplies_;
    bool isActive_ = false;
    bool hasUPower_ = true; ///< until it turns out otherwise
    bool isCritical_ = false;
    BusSlot properties_;
    BusSlot owner_;
    BusSlot pending_;
};

} // namespace wakeloft
