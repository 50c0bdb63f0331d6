#pragma once

#include "Bus.h"

#include <sys/types.h>

#include <string>
#include <string_view>

namespace wakeloft {

/// Ends all measuring when a call to the bus failed.
void check(const char* what, int result, const sd_bus_error* error = nullptr);

/// A connection of its own to the bus at `address`, greeted already.
BusPointer connectTo(const std::string& address);
BusPointer connectToSystemBus();
BusPointer connectToDesktopBus();

/// Handles what has come, waiting at most this long for something.
void process(sd_bus* bus, std::uint64_t microseconds);

/// Asks the program on this bus for an action, and does not wait until it is done.
void sendAction(sd_bus* bus, const char* action);
void startSession(sd_bus* bus, double seconds);
/// What a press on the tray item does: opens or closes the panel.
void pressTrayItem(sd_bus* bus);

/// Returns when the desktop's tray has taken an item of this process.
void waitForTrayItem(sd_bus* bus, pid_t process);

/// One plain call to the login manager; the answer holds the descriptor.
BusMessage inhibitIdle(sd_bus* systemBus);
/// Does the login manager list a block of exactly `what` by this process?
bool blocks(sd_bus* systemBus, std::string_view what, pid_t process);
/// Returns when nobody blocks anything.
void waitForNoInhibitor(sd_bus* systemBus);

} // namespace wakeloft
