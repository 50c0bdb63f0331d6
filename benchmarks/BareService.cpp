// The floor of the helper's measurements: the least service on the system bus, with one name, one object and
// one method. So that it is of use too, it is a polkit that allows everything.

#include <systemd/sd-bus.h>
#include <systemd/sd-event.h>

#include <cstdlib>

namespace {

int allow(sd_bus_message* call, void*, sd_bus_error*) {
    return sd_bus_reply_method_return(call, "(bba{ss})", 1, 0, 0);
}

constexpr sd_bus_vtable vtable[] = {
    SD_BUS_VTABLE_START(0),
    SD_BUS_METHOD("CheckAuthorization", "(sa{sv})sa{ss}us", "(bba{ss})", allow, SD_BUS_VTABLE_UNPRIVILEGED),
    SD_BUS_VTABLE_END,
};

} // namespace

int main() {
    if (std::getenv("DBUS_SYSTEM_BUS_ADDRESS") == nullptr)
        return EXIT_FAILURE; // never on the machine's own bus
    sd_event* event = nullptr;
    sd_bus* bus = nullptr;
    int result = sd_event_new(&event);
    if (result >= 0)
        result = sd_event_set_signal_exit(event, 1);
    if (result >= 0)
        result = sd_bus_open_system(&bus);
    if (result >= 0)
        result = sd_bus_attach_event(bus, event, SD_EVENT_PRIORITY_NORMAL);
    if (result >= 0)
        result = sd_bus_add_object_vtable(bus, nullptr, "/org/freedesktop/PolicyKit1/Authority",
                                          "org.freedesktop.PolicyKit1.Authority", vtable, nullptr);
    if (result >= 0)
        result = sd_bus_request_name(bus, "org.freedesktop.PolicyKit1", 0);
    if (result >= 0)
        result = sd_event_loop(event);
    sd_bus_flush_close_unref(bus);
    sd_event_unref(event);
    return result == 0 ? EXIT_SUCCESS : EXIT_FAILURE;
}
