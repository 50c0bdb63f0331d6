#include "SleepDisabledProperty.h"

#include "Owned.h"

#include <IOKit/IOKitLib.h>

namespace wakeloft {

std::expected<bool, PlatformError> readSleepDisabledProperty() {
    // The dictionary that is made here is the call's to release.
    const io_service_t root =
        IOServiceGetMatchingService(kIOMainPortDefault, IOServiceMatching("IOPMrootDomain"));
    if (root == IO_OBJECT_NULL)
        return std::unexpected(PlatformError{"IOKit", 0, "The registry has no entry for power management."});
    const Owned<CFTypeRef> value(
        IORegistryEntryCreateCFProperty(root, CFSTR("SleepDisabled"), kCFAllocatorDefault, 0));
    IOObjectRelease(root);
    if (!value)
        return false; // never set since the machine started
    if (CFGetTypeID(value.get()) != CFBooleanGetTypeID())
        return std::unexpected(PlatformError{"IOKit", 0, "The registry's sleep setting is no boolean."});
    return CFBooleanGetValue(static_cast<CFBooleanRef>(value.get())) != 0;
}

} // namespace wakeloft
