#pragma once

#include "Bus.h"
#include "support/Lifetime.h"
#include "support/MainRunLoop.h"
#include "support/Signal.h"

namespace wakeloft {

/// The system bus, kept: opened when first wanted, and opened again after it was lost, a few times with
/// growing pauses and then at the next wish. Main thread.
class BusConnection {
  public:
    /// `event` and `loop` must outlive the connection.
    BusConnection(sd_event* event, MainRunLoop& loop) : event_(event), loop_(loop) {}

    /// The open bus, or why there is none. Slots on a former bus stay valid and silent.
    std::expected<sd_bus*, PlatformError> bus();

    /// Told after a bus that was lost, or was not to be had, has been opened: names must be watched and
    /// signals matched anew.
    Signal& reopened() { return reopened_; }
    Signal& lost() { return lost_; }
    MainRunLoop& loop() { return loop_; }

  private:
    std::expected<void, PlatformError> open();
    void disconnected();
    void reopenAfter(Seconds pause);

    sd_event* event_;
    MainRunLoop& loop_;
    BusPointer bus_;
    BusSlot disconnectedSlot_;
    bool wasLost_ = false;
    Signal reopened_;
    Signal lost_;
    Lifetime lifetime_;
};

} // namespace wakeloft
