#pragma once

#include "Bus.h"
#include "Program.h"

#include <string>

namespace wakeloft {

/// A tray on a bus of its own: takes items and reads their icon, as a real one does first.
class TrayWatcher {
  public:
    explicit TrayWatcher(const std::string& address);

    /// Returns when an item has registered and its icon has been read: when that was.
    Clock::time_point waitForItem();
    /// Presses the item, as a click of the mouse does, and does not wait for the answer.
    void press();
    /// Returns when the item's program is off the bus.
    void waitForNoItem();

  private:
    static int registerItem(sd_bus_message* call, void* userdata, sd_bus_error*);
    static int iconRead(sd_bus_message* reply, void* userdata, sd_bus_error*);

    BusPointer bus_;
    BusSlot object_;
    BusSlot reading_;
    std::string item_; ///< the unique name of the item's program
    bool isIconRead_ = false;
    Clock::time_point iconReadAt_;
};

} // namespace wakeloft
