#pragma once

#include "BusFlag.h"
#include "KernelDevices.h"
#include "lid/MachineConditions.h"

#include <array>
#include <functional>

namespace wakeloft {

/// The conditions of this machine. On battery: what UPower tells, else the kernel. A display: what the kernel
/// says of its connectors; where it has none to show, what the login manager told last. Nothing here waits.
/// Main thread.
class SystemMachineConditions final : public MachineConditions {
  public:
    /// `trouble` is told what cannot be followed. `systemBus` must outlive the conditions.
    SystemMachineConditions(BusConnection& systemBus, std::function<void(const PlatformError&)> trouble,
                            KernelDevices kernel = KernelDevices());

    [[nodiscard]] bool isOnBattery() const override;
    [[nodiscard]] bool hasExternalDisplay() const override;

    /// A service told something new.
    Signal& told() { return told_; }

  private:
    void follow();

    BusConnection& systemBus_;
    std::function<void(const PlatformError&)> trouble_;
    KernelDevices kernel_;
    Signal told_;
    BusFlag onBattery_;
    mutable BusFlag docked_; ///< announces no changes: asked anew at each use
    std::array<BusSlot, 2> changes_;
    Subscription lost_;
    Subscription reopened_;
};

} // namespace wakeloft
