#include "SystemMachineConditions.h"

#include "Owned.h"

#include <CoreGraphics/CoreGraphics.h>
#include <IOKit/ps/IOPSKeys.h>
#include <IOKit/ps/IOPowerSources.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <span>

namespace wakeloft {

bool SystemMachineConditions::isOnBattery() const {
    const Owned<CFTypeRef> information(IOPSCopyPowerSourcesInfo());
    if (!information)
        return false;
    const CFStringRef type = IOPSGetProvidingPowerSourceType(information.get()); // not ours to release
    if (type == nullptr) {
        std::fputs("Wakeloft: the system names no power source.\n", stderr);
        std::abort();
    }
    return CFEqual(type, CFSTR(kIOPSBatteryPowerValue)) != 0;
}

bool SystemMachineConditions::hasExternalDisplay() const {
    std::array<CGDirectDisplayID, 32> displays{};
    std::uint32_t count = 0;
    if (CGGetOnlineDisplayList(displays.size(), displays.data(), &count) != kCGErrorSuccess)
        return true; // so that nobody is warned for nothing
    const auto online = std::span(displays).first(std::min<std::size_t>(count, displays.size()));
    return std::ranges::any_of(online,
                               [](CGDirectDisplayID display) { return CGDisplayIsBuiltin(display) == 0; });
}

} // namespace wakeloft
