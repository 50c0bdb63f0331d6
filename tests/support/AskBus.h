#pragma once

#include "Bus.h"

#include <string>

namespace wakeloft {

/// The reply to a call, or the text of the error that came instead.
struct BusAnswer {
    BusMessage reply;
    std::string error;

    explicit operator bool() const { return reply != nullptr; }
};

/// Calls a method and waits for the answer; `types` and `arguments` as sd_bus_message_append takes them.
template <class... Arguments>
BusAnswer askBus(sd_bus* bus, const char* name, const char* path, const char* interface, const char* method,
                 const char* types = nullptr, Arguments... arguments) {
    BusError error;
    sd_bus_message* reply = nullptr;
    const int result =
        sd_bus_call_method(bus, name, path, interface, method, error.get(), &reply, types, arguments...);
    return {BusMessage(reply),
            result < 0 ? std::string(error.get()->name) + ": " + error.get()->message : ""};
}

/// A property that is a text, empty where there is none.
inline std::string askBusText(sd_bus* bus, const char* name, const char* path, const char* interface,
                              const char* property) {
    const auto answer =
        askBus(bus, name, path, "org.freedesktop.DBus.Properties", "Get", "ss", interface, property);
    const char* text = "";
    if (answer)
        sd_bus_message_read(answer.reply.get(), "v", "s", &text);
    return text;
}

} // namespace wakeloft
