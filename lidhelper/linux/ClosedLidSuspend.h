#pragma once

#include "Bus.h"
#include "support/Date.h"

#include <functional>
#include <string>

namespace wakeloft {

/// Lets the computer sleep when the lock is let go while the lid is shut. The login manager does so by
/// itself; a desktop that handles the lid acts on its movement alone, and would leave a closed laptop awake
/// in its bag. Main thread.
class ClosedLidSuspend {
  public:
    /// `isNeeded` is asked last: the lock may have been taken again. `bus` must outlive this.
    ClosedLidSuspend(sd_bus* bus, std::function<bool()> isNeeded, std::function<void(const std::string&)> log)
        : bus_(bus), isNeeded_(std::move(isNeeded)), log_(std::move(log)) {}

    /// Runs the loop until there is no answer to wait for, at most `seconds`.
    void finish(sd_event* event, Seconds seconds) const;

    /// Whether the holders of the lock want it. Stays as it was last said when the last of them goes.
    void setWanted(bool isWanted) { isWanted_ = isWanted; }
    /// The lock was let go: looks at the lid, unless nobody wants it or it is at a dock, and asks for sleep.
    void released();
    /// An answer is still to come.
    [[nodiscard]] bool isUnderWay() const { return pending_ != nullptr; }

  private:
    void told(sd_bus_message* properties);
    void suspend();
    void failed(const PlatformError& error);

    sd_bus* bus_;
    std::function<bool()> isNeeded_;
    std::function<void(const std::string&)> log_;
    bool isWanted_ = false;
    BusSlot pending_;
};

} // namespace wakeloft
