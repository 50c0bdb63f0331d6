#pragma once

#include "Bus.h"

namespace wakeloft {

/// Calls `woke` after each sleep of the machine, also after one that failed, as the login manager on the
/// system bus tells it (PrepareForSleep(false)). Ends with the returned slot.
std::expected<BusSlot, PlatformError> watchWakeSignal(sd_bus* systemBus, std::function<void()> woke);

} // namespace wakeloft
