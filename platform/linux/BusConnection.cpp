#include "BusConnection.h"

#include <utility>

namespace wakeloft {

namespace {
constexpr Seconds firstPause = 1;
constexpr Seconds longestPause = 64;
} // namespace

std::expected<sd_bus*, PlatformError> BusConnection::bus() {
    if (bus_ == nullptr)
        if (auto opened = open(); !opened)
            return std::unexpected(std::move(opened.error()));
    return bus_.get();
}

std::expected<void, PlatformError> BusConnection::open() {
    auto opened = openSystemBus(event_);
    if (!opened) {
        wasLost_ = true; // who wanted it then is told when it comes
        return std::unexpected(std::move(opened.error()));
    }
    auto watched = watchBusEnd(opened->get(), [this] { disconnected(); });
    if (!watched)
        return std::unexpected(std::move(watched.error()));
    bus_ = std::move(*opened);
    disconnectedSlot_ = std::move(*watched);
    if (std::exchange(wasLost_, false))
        reopened_.emit();
    return {};
}

// Told from inside the bus, so it is taken apart in a later turn.
void BusConnection::disconnected() {
    loop_.perform(lifetime_.guard([this] {
        disconnectedSlot_.reset();
        bus_.reset();
        wasLost_ = true;
        lost_.emit();
        reopenAfter(firstPause);
    }));
}

void BusConnection::reopenAfter(Seconds pause) {
    if (pause > longestPause)
        return; // the next wish for the bus tries again
    loop_.performAfter(pause, lifetime_.guard([this, pause] {
        if (bus_ == nullptr && !open())
            reopenAfter(pause * 4);
    }));
}

} // namespace wakeloft
