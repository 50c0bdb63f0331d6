#pragma once

#include "Bus.h"
#include "SystemMachineConditions.h"

#include <systemd/sd-device.h>

#include <functional>
#include <memory>

namespace wakeloft {

/// Tells when a power supply or a display came, went or changed, by the system's device events, and when
/// UPower or the login manager told the conditions something new. Main thread.
class SystemMachineConditionsNotifier final : public MachineConditionsNotifier {
  public:
    /// `trouble` is told what cannot be followed. `event` and `conditions` must outlive the notifier.
    SystemMachineConditionsNotifier(sd_event* event, SystemMachineConditions& conditions,
                                    std::function<void(const PlatformError&)> trouble);

    void observe(std::function<void()> handler) override;

  private:
    struct MonitorDeleter {
        void operator()(sd_device_monitor* monitor) const { sd_device_monitor_unref(monitor); }
    };

    void watchDevices();
    void tell() const;

    sd_event* event_;
    SystemMachineConditions& conditions_;
    std::function<void(const PlatformError&)> trouble_;
    std::function<void()> handler_;
    std::unique_ptr<sd_device_monitor, MonitorDeleter> devices_;
    Subscription told_;
};

} // namespace wakeloft
