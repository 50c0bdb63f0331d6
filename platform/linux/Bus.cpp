#include "Bus.h"

#include <cerrno>
#include <chrono>
#include <cstring>
#include <utility>

namespace wakeloft {

namespace {

/// Waits for the greeting, which the time limits of calls do not cover: a bus may accept and say nothing.
int waitUntilReady(sd_bus* bus) {
    using Clock = std::chrono::steady_clock;
    const auto end = Clock::now() + std::chrono::microseconds(busCallTimeoutMicroseconds);
    int result = 0;
    while (result >= 0 || result == -EINTR) {
        if (const int isReady = sd_bus_is_ready(bus); isReady != 0)
            return isReady < 0 ? isReady : 0;
        result = sd_bus_process(bus, nullptr);
        if (result != 0)
            continue;
        const auto left = std::chrono::duration_cast<std::chrono::microseconds>(end - Clock::now()).count();
        if (left <= 0)
            return -ETIMEDOUT;
        result = sd_bus_wait(bus, static_cast<std::uint64_t>(left));
    }
    return result;
}

std::expected<BusPointer, PlatformError> attached(sd_bus* bus, int result, std::string_view what,
                                                  sd_event* event) {
    if (result < 0)
        return std::unexpected(busFailure(what, result));
    BusPointer owned(bus);
    result = waitUntilReady(bus);
    if (result >= 0)
        result = sd_bus_attach_event(bus, event, SD_EVENT_PRIORITY_NORMAL);
    if (result < 0)
        return std::unexpected(busFailure(what, result));
    return owned;
}

int handle(sd_bus_message* message, void* userdata, sd_bus_error*) {
    // A copy: the handler may end its own slot, and with it the original.
    const BusHandler handler = *static_cast<BusHandler*>(userdata);
    handler(message);
    return 0;
}

/// Makes `slot` the owner of its handler.
BusSlot owning(sd_bus_slot* slot, std::unique_ptr<BusHandler> handler) {
    sd_bus_slot_set_destroy_callback(slot, [](void* userdata) { delete static_cast<BusHandler*>(userdata); });
    handler.release(); // NOLINT(bugprone-unused-return-value): the slot's userdata, freed above
    return BusSlot(slot);
}

} // namespace

PlatformError busFailure(std::string_view what, const sd_bus_error* error, int result) {
    if (error == nullptr || !sd_bus_error_is_set(error))
        return busFailure(what, result);
    const std::string name = error->name;
    std::string text(what);
    constexpr std::size_t longest = 300; // of a text that anybody on the bus may have written
    if (error->message != nullptr && *error->message != '\0')
        text.append(": ").append(std::string_view(error->message).substr(0, longest));
    return {name, result, text + " (" + name + ")."};
}

PlatformError busFailure(std::string_view what, int result) {
    char buffer[128];
    const char* text = strerror_r(-result, buffer, sizeof buffer);
    return {"errno", result, std::string(what) + ": " + text + "."};
}

bool isNobodyThere(const sd_bus_error* error) {
    return sd_bus_error_has_name(error, SD_BUS_ERROR_SERVICE_UNKNOWN) != 0 ||
           sd_bus_error_has_name(error, SD_BUS_ERROR_NAME_HAS_NO_OWNER) != 0;
}

std::expected<BusPointer, PlatformError> openSystemBus(sd_event* event) {
    sd_bus* bus = nullptr;
    const int result = sd_bus_open_system_with_description(&bus, "system");
    return attached(bus, result, "The system bus cannot be reached", event);
}

std::expected<BusPointer, PlatformError> openSessionBus(sd_event* event) {
    sd_bus* bus = nullptr;
    const int result = sd_bus_open_user_with_description(&bus, "session");
    return attached(bus, result, "The session bus cannot be reached", event);
}

std::expected<BusSlot, PlatformError> matchBusSignal(sd_bus* bus, const std::string& rule,
                                                     BusHandler handler) {
    auto owned = std::make_unique<BusHandler>(std::move(handler));
    sd_bus_slot* slot = nullptr;
    const int result = sd_bus_add_match_async(bus, &slot, rule.c_str(), handle, nullptr, owned.get());
    if (result < 0)
        return std::unexpected(busFailure("Signals of the bus cannot be followed", result));
    return owning(slot, std::move(owned));
}

std::expected<BusSlot, PlatformError> watchBusName(sd_bus* bus, const char* name,
                                                   std::function<void(std::string)> changed) {
    const std::string rule =
        std::string("type='signal',sender='org.freedesktop.DBus',path='/org/freedesktop/DBus',"
                    "interface='org.freedesktop.DBus',member='NameOwnerChanged',arg0='") +
        name + "'";
    return matchBusSignal(bus, rule, [changed = std::move(changed)](sd_bus_message* message) {
        const char* newOwner = nullptr;
        if (sd_bus_message_skip(message, "ss") >= 0 && sd_bus_message_read(message, "s", &newOwner) >= 0)
            changed(newOwner);
    });
}

std::expected<BusSlot, PlatformError> watchBusEnd(sd_bus* bus, std::function<void()> ended) {
    return matchBusSignal(
        bus,
        "type='signal',sender='org.freedesktop.DBus.Local',path='/org/freedesktop/DBus/Local',"
        "interface='org.freedesktop.DBus.Local',member='Disconnected'",
        [ended = std::move(ended)](sd_bus_message*) { ended(); });
}

std::expected<BusSlot, PlatformError> callBusLater(sd_bus* bus, sd_bus_message* call, BusHandler handler) {
    auto owned = std::make_unique<BusHandler>(std::move(handler));
    sd_bus_slot* slot = nullptr;
    const int result = sd_bus_call_async(bus, &slot, call, handle, owned.get(), busCallTimeoutMicroseconds);
    if (result < 0)
        return std::unexpected(busFailure("A call cannot be sent to the bus", result));
    return owning(slot, std::move(owned));
}

std::expected<BusMessage, PlatformError> callBus(sd_bus* bus, sd_bus_message* call, std::string_view what) {
    BusError error;
    sd_bus_message* reply = nullptr;
    const int result = sd_bus_call(bus, call, busCallTimeoutMicroseconds, error.get(), &reply);
    if (result < 0)
        return std::unexpected(busFailure(what, error.get(), result));
    return BusMessage(reply);
}

} // namespace wakeloft
