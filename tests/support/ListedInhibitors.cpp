#include "support/ListedInhibitors.h"

namespace wakeloft {

int listedInhibitors(sd_bus* bus, const std::string& what, const std::string& who) {
    BusError error;
    sd_bus_message* reply = nullptr;
    if (sd_bus_call_method(bus, "org.freedesktop.login1", "/org/freedesktop/login1",
                           "org.freedesktop.login1.Manager", "ListInhibitors", error.get(), &reply,
                           nullptr) < 0)
        return -1;
    const BusMessage owned(reply);
    int count = 0;
    const char* listedWhat = nullptr;
    const char* listedWho = nullptr;
    const char* mode = nullptr;
    sd_bus_message_enter_container(reply, 'a', "(ssssuu)");
    while (sd_bus_message_read(reply, "(ssssuu)", &listedWhat, &listedWho, nullptr, &mode, nullptr, nullptr) >
           0)
        count += what == listedWhat && who == listedWho && std::string(mode) == "block";
    return count;
}

} // namespace wakeloft
