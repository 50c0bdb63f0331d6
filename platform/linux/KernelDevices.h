#pragma once

#include <optional>
#include <string>

namespace wakeloft {

/// What the kernel's device folders say of the machine, read afresh each time.
struct KernelDevices {
    std::string powerSupplies = "/sys/class/power_supply";
    std::string displays = "/sys/class/drm";

    /// False where nothing can be read. The batteries of mice and the like do not count.
    [[nodiscard]] bool isOnBattery() const;
    /// A display besides the built-in one is driven; nothing where no connector can be read.
    [[nodiscard]] std::optional<bool> hasExternalDisplay() const;
};

} // namespace wakeloft
