#include "WakeSignal.h"

#include <utility>

namespace wakeloft {

std::expected<BusSlot, PlatformError> watchWakeSignal(sd_bus* systemBus, std::function<void()> woke) {
    return matchBusSignal(systemBus,
                          "type='signal',sender='org.freedesktop.login1',path='/org/freedesktop/login1',"
                          "interface='org.freedesktop.login1.Manager',member='PrepareForSleep'",
                          [woke = std::move(woke)](sd_bus_message* message) {
                              int isGoingToSleep = 1;
                              if (sd_bus_message_read(message, "b", &isGoingToSleep) >= 0 &&
                                  isGoingToSleep == 0)
                                  woke();
                          });
}

} // namespace wakeloft
