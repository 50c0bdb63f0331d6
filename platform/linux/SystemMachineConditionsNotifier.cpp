#include "SystemMachineConditionsNotifier.h"

#include <utility>

namespace wakeloft {

SystemMachineConditionsNotifier::SystemMachineConditionsNotifier(
    sd_event* event, SystemMachineConditions& conditions, std::function<void(const PlatformError&)> trouble)
    : event_(event), conditions_(conditions), trouble_(std::move(trouble)) {}

void SystemMachineConditionsNotifier::observe(std::function<void()> handler) {
    const bool isFirst = handler_ == nullptr;
    handler_ = std::move(handler);
    if (!isFirst)
        return;
    told_ = conditions_.told().subscribe([this] { tell(); });
    watchDevices();
}

// The kernel filters: events of other devices do not wake this process.
void SystemMachineConditionsNotifier::watchDevices() {
    sd_device_monitor* monitor = nullptr;
    int result = sd_device_monitor_new(&monitor);
    devices_.reset(monitor);
    for (const char* subsystem : {"power_supply", "drm"})
        if (result >= 0)
            result = sd_device_monitor_filter_add_match_subsystem_devtype(monitor, subsystem, nullptr);
    if (result >= 0)
        result = sd_device_monitor_attach_event(monitor, event_);
    if (result >= 0)
        result = sd_device_monitor_start(
            monitor,
            [](sd_device_monitor*, sd_device*, void* userdata) {
                static_cast<SystemMachineConditionsNotifier*>(userdata)->tell();
                return 0;
            },
            this);
    if (result < 0)
        trouble_(busFailure("Changes of the power supply and of displays cannot be followed", result));
}

void SystemMachineConditionsNotifier::tell() const {
    const auto handler = handler_; // it may set another
    handler();
}

} // namespace wakeloft
