#include "BusService.h"

#include <cstdlib>
#include <iostream>
#include <system_error>
#include <utility>

namespace wakeloft::rig {

Outcome outcome(std::string_view what, int result) {
    if (result >= 0) {
        return {};
    }
    return std::unexpected(std::string(what) + ": " + std::generic_category().message(-result));
}

BusService::BusService(Event event, Bus bus) : event_(std::move(event)), bus_(std::move(bus)) {}

std::expected<BusService, std::string> BusService::connect() {
    if (std::getenv("DBUS_SYSTEM_BUS_ADDRESS") == nullptr) {
        return std::unexpected(
            "DBUS_SYSTEM_BUS_ADDRESS is not set; this stand-in runs on a private bus only");
    }
    sd_event* event = nullptr;
    int result = sd_event_new(&event);
    Event ownedEvent(event);
    if (result >= 0) {
        result = sd_event_set_signal_exit(event, 1);
    }
    if (result < 0) {
        return std::unexpected(outcome("Cannot make the event loop", result).error());
    }
    sd_bus* bus = nullptr;
    result = sd_bus_open_system(&bus);
    Bus ownedBus(bus);
    if (result >= 0) {
        result = sd_bus_set_exit_on_disconnect(bus, 1);
    }
    if (result >= 0) {
        result = sd_bus_attach_event(bus, event, SD_EVENT_PRIORITY_NORMAL);
    }
    if (result < 0) {
        return std::unexpected(outcome("Cannot connect to the bus", result).error());
    }
    return BusService(std::move(ownedEvent), std::move(ownedBus));
}

Outcome BusService::serveAs(const char* name) const {
    if (auto taken =
            outcome(std::string("Cannot take the name ") + name, sd_bus_request_name(bus(), name, 0));
        !taken) {
        return taken;
    }
    const int code = sd_event_loop(event());
    if (code > 0) {
        return std::unexpected("The bus went away");
    }
    return outcome("The event loop failed", code);
}

int finish(std::string_view program, const Outcome& result) {
    if (result) {
        return EXIT_SUCCESS;
    }
    std::cerr << program << ": " << result.error() << '\n';
    return EXIT_FAILURE;
}

} // namespace wakeloft::rig
