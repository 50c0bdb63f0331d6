#include "DesktopLidAction.h"

#include <cerrno>
#include <cstdint>
#include <string_view>
#include <utility>

namespace wakeloft {

namespace {

constexpr const char* kdeName = "org.kde.Solid.PowerManagement";
constexpr const char* xfceName = "org.xfce.PowerManager";
constexpr std::uint32_t sleepAction = 1; // in both desktops' numbering
constexpr const char* unknown = "The desktop does not tell what it does when the lid is shut";

/// Reads the number or truth value in a variant; 0 for anything else.
int readNumber(sd_bus_message* message, std::uint32_t& value) {
    value = 0;
    char type = 0;
    const char* contents = nullptr;
    const int result = sd_bus_message_peek_type(message, &type, &contents);
    if (result < 0)
        return result;
    const std::string_view kind = contents;
    if (kind == "u" || kind == "i" || kind == "b")
        return sd_bus_message_read(message, "v", contents, &value);
    return sd_bus_message_skip(message, "v");
}

} // namespace

DesktopLidAction::DesktopLidAction(sd_bus* sessionBus, const MachineConditions& conditions,
                                   std::function<void(const PlatformError&)> trouble)
    : bus_(sessionBus), conditions_(conditions), trouble_(std::move(trouble)) {
    if (bus_ == nullptr)
        return;
    std::size_t next = 0;
    for (const char* name : {kdeName, xfceName}) {
        if (auto watch = watchBusName(bus_, name, [this](const std::string&) { ask(); }))
            watches_[next++] = std::move(*watch);
        else
            trouble_(watch.error());
    }
    ask();
}

bool DesktopLidAction::isSleep() {
    if (bus_ != nullptr)
        ask();
    if (!xfce_)
        return kdeSleeps_;
    return !xfce_->isLidLeftAlone &&
           (conditions_.isOnBattery() ? xfce_->sleepsOnBattery : xfce_->sleepsOnMains);
}

void DesktopLidAction::ask() {
    askLater({.service = kdeName,
              .path = "/org/kde/Solid/PowerManagement/Actions/HandleButtonEvents",
              .interface = "org.kde.Solid.PowerManagement.Actions.HandleButtonEvents",
              .method = "lidAction",
              .arguments = {}},
             kdePending_, [this](sd_bus_message* reply) { kdeAnswered(reply); });
    askLater({.service = "org.freedesktop.DBus",
              .path = "/org/freedesktop/DBus",
              .interface = "org.freedesktop.DBus",
              .method = "NameHasOwner",
              .arguments = {xfceName}},
             xfcePending_, [this](sd_bus_message* reply) { xfceFound(reply); });
}

void DesktopLidAction::askLater(const Call& call, BusSlot& pending, BusHandler answered) {
    sd_bus_message* message = nullptr;
    int result =
        sd_bus_message_new_method_call(bus_, &message, call.service, call.path, call.interface, call.method);
    const BusMessage owned(message);
    if (result >= 0)
        result = sd_bus_message_set_auto_start(message, 0);
    for (const char* argument : call.arguments)
        if (result >= 0 && argument != nullptr)
            result = sd_bus_message_append(message, "s", argument);
    auto slot = result < 0 ? std::unexpected(busFailure(unknown, result))
                           : callBusLater(bus_, message, std::move(answered));
    if (slot)
        pending = std::move(*slot);
    else
        fail(slot.error());
}

void DesktopLidAction::kdeAnswered(sd_bus_message* reply) {
    kdePending_.reset();
    std::uint32_t action = 0;
    const auto* error = sd_bus_message_get_error(reply);
    const int result = error != nullptr ? -EIO : sd_bus_message_read(reply, "i", &action);
    if (result >= 0)
        kdeSleeps_ = action == sleepAction;
    else if (isNobodyThere(error))
        kdeSleeps_ = false;
    else
        fail(busFailure(unknown, error, result));
}

void DesktopLidAction::xfceFound(sd_bus_message* reply) {
    xfcePending_.reset();
    int isThere = 0;
    const auto* error = sd_bus_message_get_error(reply);
    const int result = error != nullptr ? -EIO : sd_bus_message_read(reply, "b", &isThere);
    if (result < 0)
        fail(busFailure(unknown, error, result));
    else if (isThere == 0)
        xfce_.reset();
    else
        askLater({.service = "org.xfce.Xfconf",
                  .path = "/org/xfce/Xfconf",
                  .interface = "org.xfce.Xfconf",
                  .method = "GetAllProperties",
                  .arguments = {"xfce4-power-manager", "/"}},
                 xfcePending_, [this](sd_bus_message* answer) { xfceAnswered(answer); });
}

// What is not listed was never set: by its own default the desktop then only locks the screen.
void DesktopLidAction::xfceAnswered(sd_bus_message* reply) {
    xfcePending_.reset();
    XfceSettings settings;
    const auto* error = sd_bus_message_get_error(reply);
    int result = error != nullptr ? -EIO : sd_bus_message_enter_container(reply, 'a', "{sv}");
    while (result >= 0 && (result = sd_bus_message_enter_container(reply, 'e', "sv")) > 0) {
        const char* name = nullptr;
        std::uint32_t value = 0;
        result = sd_bus_message_read(reply, "s", &name);
        if (result >= 0)
            result = readNumber(reply, value);
        if (result >= 0)
            result = sd_bus_message_exit_container(reply);
        if (result < 0)
            break;
        const std::string_view setting = name;
        if (setting == "/xfce4-power-manager/logind-handle-lid-switch")
            settings.isLidLeftAlone = value != 0;
        else if (setting == "/xfce4-power-manager/lid-action-on-battery")
            settings.sleepsOnBattery = value == sleepAction;
        else if (setting == "/xfce4-power-manager/lid-action-on-ac")
            settings.sleepsOnMains = value == sleepAction;
    }
    if (result < 0)
        return fail(busFailure(unknown, error, result));
    xfce_ = settings;
}

void DesktopLidAction::fail(const PlatformError& error) {
    if (std::exchange(latestTrouble_, error.description) != error.description)
        trouble_(error);
}

} // namespace wakeloft
