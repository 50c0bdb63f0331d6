#include "DesktopApplication.h"

#include <cstdlib>
#include <cstring>
#include <string_view>
#include <utility>

namespace wakeloft {

namespace {

constexpr const char* interface = "org.freedesktop.Application";

/// The token among the platform data, under its Wayland or its X11 name.
std::string activationToken(sd_bus_message* message) {
    std::string token;
    if (sd_bus_message_enter_container(message, 'a', "{sv}") < 0)
        return token;
    while (sd_bus_message_enter_container(message, 'e', "sv") > 0) {
        const char* key = nullptr;
        const char* value = nullptr;
        if (sd_bus_message_read(message, "s", &key) < 0)
            break;
        const std::string_view name(key);
        const char* contents = nullptr;
        char type = 0;
        if (sd_bus_message_peek_type(message, &type, &contents) < 0)
            break;
        if ((name == "activation-token" || name == "desktop-startup-id") &&
            std::string_view(contents) == "s") {
            if (sd_bus_message_read(message, "v", "s", &value) < 0)
                break;
            token = value;
        } else if (sd_bus_message_skip(message, "v") < 0) {
            break;
        }
        if (sd_bus_message_exit_container(message) < 0)
            break;
    }
    return token;
}

DesktopApplication::Argument numberOrText(sd_bus_message* message, std::string_view type) {
    if (type == "d") {
        double number = 0;
        if (sd_bus_message_read(message, "v", "d", &number) >= 0)
            return number;
    } else if (type == "i") {
        std::int32_t number = 0;
        if (sd_bus_message_read(message, "v", "i", &number) >= 0)
            return static_cast<double>(number);
    }
    return std::string(type); // nothing that an action of ours takes
}

/// The first of an action's arguments.
DesktopApplication::Argument firstArgument(sd_bus_message* message) {
    const char* contents = nullptr;
    char type = 0;
    if (sd_bus_message_enter_container(message, 'a', "v") <= 0)
        return {};
    if (sd_bus_message_peek_type(message, &type, &contents) <= 0)
        return {};
    return numberOrText(message, contents);
}

/// Whether the instance that runs has answered.
bool askToOpen(sd_bus* bus) {
    const char* token = std::getenv("XDG_ACTIVATION_TOKEN");
    const char* startupId = std::getenv("DESKTOP_STARTUP_ID");
    sd_bus_message* call = nullptr;
    int result = sd_bus_message_new_method_call(bus, &call, DesktopApplication::identifier,
                                                DesktopApplication::objectPath, interface, "Activate");
    const BusMessage owned(call);
    if (result >= 0)
        result =
            sd_bus_message_append(call, "a{sv}", 2, "activation-token", "s", token != nullptr ? token : "",
                                  "desktop-startup-id", "s", startupId != nullptr ? startupId : "");
    return result >= 0 && callBus(bus, call, "").has_value();
}

} // namespace

DesktopApplication::DesktopApplication(sd_bus* bus, Events events) : bus_(bus), events_(std::move(events)) {}

DesktopApplication::~DesktopApplication() {
    sd_bus_release_name_async(bus_, nullptr, identifier, nullptr, nullptr);
}

std::expected<std::pair<DesktopApplication::Claim, std::unique_ptr<DesktopApplication>>, PlatformError>
DesktopApplication::claim(sd_bus* bus, Events events) {
    static const sd_bus_vtable vtable[] = {
        SD_BUS_VTABLE_START(SD_BUS_VTABLE_UNPRIVILEGED),
        SD_BUS_METHOD("Activate", "a{sv}", "", activate, SD_BUS_VTABLE_UNPRIVILEGED),
        SD_BUS_METHOD("Open", "asa{sv}", "", open, SD_BUS_VTABLE_UNPRIVILEGED),
        SD_BUS_METHOD("ActivateAction", "sava{sv}", "", activateAction, SD_BUS_VTABLE_UNPRIVILEGED),
        SD_BUS_VTABLE_END,
    };
    std::unique_ptr<DesktopApplication> application(new DesktopApplication(bus, std::move(events)));
    // The object first: whoever sees the name may call at once.
    sd_bus_slot* slot = nullptr;
    int result = sd_bus_add_object_vtable(bus, &slot, objectPath, interface, vtable, application.get());
    application->object_.reset(slot);
    if (result >= 0)
        result = sd_bus_request_name(bus, identifier, 0);
    if (result == -EEXIST) {
        const auto claim = askToOpen(bus) ? Claim::handedOver : Claim::otherIsSilent;
        return std::pair(claim, std::unique_ptr<DesktopApplication>());
    }
    if (result < 0)
        return std::unexpected(busFailure("Wakeloft cannot take its name on the session bus", result));
    return std::pair(Claim::first, std::move(application));
}

int DesktopApplication::activate(sd_bus_message* message, void* userdata, sd_bus_error*) {
    const int result = sd_bus_reply_method_return(message, nullptr);
    static_cast<DesktopApplication*>(userdata)->events_.activated(activationToken(message));
    return result;
}

// There are no files to open: it is a start like any other.
int DesktopApplication::open(sd_bus_message* message, void* userdata, sd_bus_error* error) {
    return sd_bus_message_skip(message, "as") < 0 ? -EINVAL : activate(message, userdata, error);
}

int DesktopApplication::activateAction(sd_bus_message* message, void* userdata, sd_bus_error* error) {
    const char* name = nullptr;
    const int result = sd_bus_message_read(message, "s", &name);
    if (result < 0)
        return result;
    const std::string action(name);
    if (!static_cast<DesktopApplication*>(userdata)->events_.actionInvoked(action, firstArgument(message)))
        return sd_bus_error_setf(error, SD_BUS_ERROR_INVALID_ARGS,
                                 "Wakeloft has no action “%s” that takes this argument.", action.c_str());
    return sd_bus_reply_method_return(message, nullptr);
}

} // namespace wakeloft
