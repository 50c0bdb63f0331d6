#pragma once

#include "support/Error.h"

#include <systemd/sd-bus.h>
#include <systemd/sd-event.h>

#include <cstdint>
#include <expected>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

namespace wakeloft {

/// Owners of libsystemd's counted objects. A bus is flushed and closed when its owner ends.
struct BusDeleter {
    void operator()(sd_bus* bus) const { sd_bus_flush_close_unref(bus); }
    void operator()(sd_bus_message* message) const { sd_bus_message_unref(message); }
    void operator()(sd_bus_slot* slot) const { sd_bus_slot_unref(slot); }
    void operator()(sd_event_source* source) const { sd_event_source_disable_unref(source); }
};
using BusPointer = std::unique_ptr<sd_bus, BusDeleter>;
using BusMessage = std::unique_ptr<sd_bus_message, BusDeleter>;
using BusSlot = std::unique_ptr<sd_bus_slot, BusDeleter>;
using EventSource = std::unique_ptr<sd_event_source, BusDeleter>;

/// An `sd_bus_error` that frees itself.
class BusError {
  public:
    BusError() = default;
    BusError(const BusError&) = delete;
    BusError& operator=(const BusError&) = delete;
    ~BusError() { sd_bus_error_free(&error_); }

    sd_bus_error* get() { return &error_; }

  private:
    sd_bus_error error_{nullptr, nullptr, 0};
};

/// "`what`: <the bus's text> (<the error's name>)"; `result` is the negative errno of the failed call.
PlatformError busFailure(std::string_view what, const sd_bus_error* error, int result);
PlatformError busFailure(std::string_view what, int result);

/// Nobody owns the name that was called. No error (null) gives false.
bool isNobodyThere(const sd_bus_error* error);

/// Opens a bus, waits for its greeting and attaches it to `event`.
std::expected<BusPointer, PlatformError> openSystemBus(sd_event* event);
std::expected<BusPointer, PlatformError> openSessionBus(sd_event* event);

/// Handles one message of the bus. Runs on the loop's thread.
using BusHandler = std::function<void(sd_bus_message*)>;

/// Calls `handler` for each signal that `rule` matches. Ends with the returned slot.
std::expected<BusSlot, PlatformError> matchBusSignal(sd_bus* bus, const std::string& rule,
                                                     BusHandler handler);

/// Tells each change of `name`'s owner; the argument is the new owner, empty when there is none.
/// Ends with the returned slot.
std::expected<BusSlot, PlatformError> watchBusName(sd_bus* bus, const char* name,
                                                   std::function<void(std::string newOwner)> changed);

/// Calls `ended` when the connection itself ends.
std::expected<BusSlot, PlatformError> watchBusEnd(sd_bus* bus, std::function<void()> ended);

/// How long a call may take before it counts as failed.
inline constexpr std::uint64_t busCallTimeoutMicroseconds = 5'000'000;

/// Sends `call`; `handler` gets the reply, which may be an error (`sd_bus_message_get_error`), in a later
/// turn. Ending the returned slot drops the answer unread.
std::expected<BusSlot, PlatformError> callBusLater(sd_bus* bus, sd_bus_message* call, BusHandler handler);

/// Sends `call` and waits for the answer.
std::expected<BusMessage, PlatformError> callBus(sd_bus* bus, sd_bus_message* call, std::string_view what);

} // namespace wakeloft
