#include "SystemMachineConditions.h"

#include <utility>

namespace wakeloft {

namespace {

constexpr BusFlag::Address onBattery = {"org.freedesktop.UPower", "/org/freedesktop/UPower",
                                        "org.freedesktop.UPower", "OnBattery"};
constexpr BusFlag::Address docked = {"org.freedesktop.login1", "/org/freedesktop/login1",
                                     "org.freedesktop.login1.Manager", "Docked"};
constexpr const char* upowerChanges =
    "type='signal',sender='org.freedesktop.UPower',path='/org/freedesktop/UPower',"
    "interface='org.freedesktop.DBus.Properties',member='PropertiesChanged'";

} // namespace

SystemMachineConditions::SystemMachineConditions(BusConnection& systemBus,
                                                 std::function<void(const PlatformError&)> trouble,
                                                 KernelDevices kernel)
    : systemBus_(systemBus),
      trouble_(std::move(trouble)),
      kernel_(std::move(kernel)),
      onBattery_(
          systemBus, onBattery, [this] { told_.emit(); }, trouble_),
      docked_(
          systemBus, docked, [this] { told_.emit(); }, trouble_),
      lost_(systemBus.lost().subscribe([this] {
          onBattery_.forget();
          docked_.forget();
      })),
      reopened_(systemBus.reopened().subscribe([this] { follow(); })) {
    follow();
}

bool SystemMachineConditions::isOnBattery() const {
    const auto told = onBattery_.value();
    return told ? *told : kernel_.isOnBattery();
}

bool SystemMachineConditions::hasExternalDisplay() const {
    if (const auto seen = kernel_.hasExternalDisplay())
        return *seen;
    docked_.ask();
    return docked_.value().value_or(true);
}

void SystemMachineConditions::follow() {
    const auto bus = systemBus_.bus();
    if (!bus)
        return trouble_(bus.error());
    auto properties = matchBusSignal(*bus, upowerChanges, [this](sd_bus_message*) { onBattery_.ask(); });
    auto owner = watchBusName(*bus, onBattery.service, [this](const std::string&) { onBattery_.ask(); });
    for (auto* change : {&properties, &owner})
        if (!*change)
            trouble_(change->error());
    if (properties)
        changes_[0] = std::move(*properties);
    if (owner)
        changes_[1] = std::move(*owner);
    onBattery_.ask();
}

} // namespace wakeloft
