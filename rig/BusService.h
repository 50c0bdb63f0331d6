#pragma once

#include <systemd/sd-bus.h>
#include <systemd/sd-event.h>

#include <expected>
#include <memory>
#include <string>
#include <string_view>

namespace wakeloft::rig {

/// Owners of libsystemd's counted objects.
struct Release {
    void operator()(sd_event* event) const { sd_event_unref(event); }
    void operator()(sd_event_source* source) const { sd_event_source_disable_unref(source); }
    void operator()(sd_bus* bus) const { sd_bus_flush_close_unref(bus); }
    void operator()(sd_bus_creds* credentials) const { sd_bus_creds_unref(credentials); }
};
using Event = std::unique_ptr<sd_event, Release>;
using EventSource = std::unique_ptr<sd_event_source, Release>;
using Bus = std::unique_ptr<sd_bus, Release>;
using Credentials = std::unique_ptr<sd_bus_creds, Release>;

using Outcome = std::expected<void, std::string>;

/// Success, or "`what`: the system's words" when `result` is a negative errno.
Outcome outcome(std::string_view what, int result);

/// The loop and the bus that a stand-in serves on.
class BusService {
  public:
    /// Connects to the bus that DBUS_SYSTEM_BUS_ADDRESS names. Refuses when it names none: a stand-in must
    /// never appear on the machine's own bus.
    static std::expected<BusService, std::string> connect();

    sd_event* event() const { return event_.get(); }
    sd_bus* bus() const { return bus_.get(); }

    /// Takes `name` and serves until SIGTERM or SIGINT; losing the bus or failing to take the name is an
    /// error.
    Outcome serveAs(const char* name) const;

  private:
    BusService(Event event, Bus bus);
    Event event_;
    Bus bus_;
};

/// The exit code for `result`; an error goes to stderr, as "`program`: its sentence".
int finish(std::string_view program, const Outcome& result);

} // namespace wakeloft::rig
