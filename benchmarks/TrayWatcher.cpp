#include "TrayWatcher.h"

#include "BusCalls.h"
#include "Fail.h"

#include <string_view>

namespace wakeloft {

namespace {

constexpr auto patience = std::chrono::seconds(10);
constexpr std::size_t leastIcons = 5;
constexpr const char* name = "org.kde.StatusNotifierWatcher";
constexpr const char* path = "/StatusNotifierWatcher";

int property(sd_bus*, const char*, const char*, const char* property, sd_bus_message* reply, void*,
             sd_bus_error*) {
    if (std::string_view(property) == "RegisteredStatusNotifierItems")
        return sd_bus_message_append(reply, "as", 0);
    if (std::string_view(property) == "ProtocolVersion")
        return sd_bus_message_append(reply, "i", 0);
    return sd_bus_message_append(reply, "b", 1); // there is a host
}

} // namespace

TrayWatcher::TrayWatcher(const std::string& address) : bus_(connectTo(address)) {
    static const sd_bus_vtable vtable[] = {
        SD_BUS_VTABLE_START(SD_BUS_VTABLE_UNPRIVILEGED),
        SD_BUS_METHOD("RegisterStatusNotifierItem", "s", "", registerItem, 0),
        SD_BUS_PROPERTY("RegisteredStatusNotifierItems", "as", property, 0, 0),
        SD_BUS_PROPERTY("IsStatusNotifierHostRegistered", "b", property, 0, 0),
        SD_BUS_PROPERTY("ProtocolVersion", "i", property, 0, 0),
        SD_BUS_SIGNAL("StatusNotifierItemRegistered", "s", 0),
        SD_BUS_SIGNAL("StatusNotifierItemUnregistered", "s", 0),
        SD_BUS_SIGNAL("StatusNotifierHostRegistered", "", 0),
        SD_BUS_VTABLE_END,
    };
    sd_bus_slot* slot = nullptr;
    int result = sd_bus_add_object_vtable(bus_.get(), &slot, path, name, vtable, this);
    object_.reset(slot);
    if (result >= 0)
        result = sd_bus_request_name(bus_.get(), name, 0);
    if (result < 0)
        fail(busFailure("No tray can be offered", result).description);
}

int TrayWatcher::registerItem(sd_bus_message* call, void* userdata, sd_bus_error*) {
    TrayWatcher& watcher = *static_cast<TrayWatcher*>(userdata);
    const char* argument = nullptr;
    int result = sd_bus_message_read(call, "s", &argument);
    if (result < 0)
        return result;
    watcher.item_ = sd_bus_message_get_sender(call);
    result = sd_bus_reply_method_return(call, nullptr);
    if (result < 0)
        return result;
    sd_bus_slot* reading = nullptr;
    result = sd_bus_call_method_async(watcher.bus_.get(), &reading, watcher.item_.c_str(),
                                      *argument == '/' ? argument : "/StatusNotifierItem",
                                      "org.freedesktop.DBus.Properties", "Get", iconRead, &watcher, "ss",
                                      "org.kde.StatusNotifierItem", "IconPixmap");
    watcher.reading_.reset(reading);
    return result;
}

int TrayWatcher::iconRead(sd_bus_message* reply, void* userdata, sd_bus_error*) {
    TrayWatcher& watcher = *static_cast<TrayWatcher*>(userdata);
    watcher.iconReadAt_ = Clock::now();
    if (const auto* error = sd_bus_message_get_error(reply))
        fail(busFailure("An icon cannot be read", error, -EIO).description);
    std::size_t icons = 0;
    if (sd_bus_message_enter_container(reply, 'v', "a(iiay)") > 0 &&
        sd_bus_message_enter_container(reply, 'a', "(iiay)") > 0)
        while (sd_bus_message_skip(reply, "(iiay)") > 0)
            ++icons;
    if (icons < leastIcons)
        fail("An item has only " + std::to_string(icons) + " icons.");
    watcher.isIconRead_ = true;
    return 0;
}

Clock::time_point TrayWatcher::waitForItem() {
    const auto end = Clock::now() + patience;
    while (!isIconRead_) {
        process(bus_.get(), 100'000);
        if (Clock::now() > end)
            fail("No tray item came.");
    }
    isIconRead_ = false;
    return iconReadAt_;
}

void TrayWatcher::press() {
    sd_bus_message* made = nullptr;
    int result = sd_bus_message_new_method_call(bus_.get(), &made, item_.c_str(), "/StatusNotifierItem",
                                                "org.kde.StatusNotifierItem", "Activate");
    const BusMessage call(made);
    if (result >= 0)
        result = sd_bus_message_append(made, "ii", 1200, 14);
    if (result >= 0)
        result = sd_bus_message_set_expect_reply(made, 0);
    if (result >= 0)
        result = sd_bus_send(bus_.get(), made, nullptr);
    if (result >= 0)
        result = sd_bus_flush(bus_.get());
    check("The tray item cannot be pressed", result);
}

void TrayWatcher::waitForNoItem() {
    const auto end = Clock::now() + patience;
    while (sd_bus_get_name_creds(bus_.get(), item_.c_str(), 0, nullptr) >= 0)
        if (Clock::now() > end)
            fail("A program that has ended is still on the bus.");
}

} // namespace wakeloft
