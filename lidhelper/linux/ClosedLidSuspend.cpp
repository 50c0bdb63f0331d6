#include "ClosedLidSuspend.h"

#include <cerrno>
#include <chrono>
#include <string_view>
#include <utility>

namespace wakeloft {

namespace {

constexpr const char* service = "org.freedesktop.login1";
constexpr const char* path = "/org/freedesktop/login1";
constexpr const char* interface = "org.freedesktop.login1.Manager";

struct Lid {
    bool isClosed = false;
    bool isDocked = false;
};

int readLid(sd_bus_message* properties, Lid& lid) {
    int result = sd_bus_message_enter_container(properties, 'a', "{sv}");
    while (result >= 0 && (result = sd_bus_message_enter_container(properties, 'e', "sv")) > 0) {
        const char* name = nullptr;
        result = sd_bus_message_read(properties, "s", &name);
        if (result < 0)
            break;
        const std::string_view key = name;
        int value = 0;
        if (key == "LidClosed" || key == "Docked")
            result = sd_bus_message_read(properties, "v", "b", &value);
        else
            result = sd_bus_message_skip(properties, "v");
        (key == "LidClosed" ? lid.isClosed : lid.isDocked) |= value != 0;
        if (result >= 0)
            result = sd_bus_message_exit_container(properties);
    }
    return result;
}

} // namespace

void ClosedLidSuspend::released() {
    if (!isWanted_)
        return;
    sd_bus_message* message = nullptr;
    int result = sd_bus_message_new_method_call(bus_, &message, service, path,
                                                "org.freedesktop.DBus.Properties", "GetAll");
    const BusMessage call(message);
    if (result >= 0)
        result = sd_bus_message_append(message, "s", interface);
    auto slot = result < 0 ? std::unexpected(busFailure("The lid cannot be asked after", result))
                           : callBusLater(bus_, message, [this](sd_bus_message* reply) { told(reply); });
    if (slot)
        pending_ = std::move(*slot);
    else
        failed(slot.error());
}

void ClosedLidSuspend::finish(sd_event* event, Seconds seconds) const {
    using Clock = std::chrono::steady_clock;
    const auto end =
        Clock::now() + std::chrono::duration_cast<Clock::duration>(std::chrono::duration<Seconds>(seconds));
    while (isUnderWay()) {
        const auto left = std::chrono::duration_cast<std::chrono::microseconds>(end - Clock::now()).count();
        if (left <= 0 || sd_event_run(event, static_cast<std::uint64_t>(left)) < 0)
            return;
    }
}

void ClosedLidSuspend::told(sd_bus_message* properties) {
    pending_.reset();
    Lid lid;
    const auto* error = sd_bus_message_get_error(properties);
    const int result = error != nullptr ? -EIO : readLid(properties, lid);
    if (result < 0)
        failed(busFailure("The login manager does not tell whether the lid is shut", error, result));
    else if (lid.isClosed && !lid.isDocked && isNeeded_())
        suspend();
}

void ClosedLidSuspend::suspend() {
    constexpr int withoutDialog = 0;
    log_("the lid is shut: asking for sleep");
    sd_bus_message* message = nullptr;
    int result = sd_bus_message_new_method_call(bus_, &message, service, path, interface, "Suspend");
    const BusMessage call(message);
    if (result >= 0)
        result = sd_bus_message_append(message, "b", withoutDialog);
    auto slot = result < 0
                    ? std::unexpected(busFailure("Sleep cannot be asked for", result))
                    : callBusLater(
                          bus_, message,
                          [this](sd_bus_message* reply) {
                              pending_.reset();
                              if (const auto* error = sd_bus_message_get_error(reply))
                                  failed(busFailure("The login manager refused to sleep", error, -EIO));
                          });
    if (slot)
        pending_ = std::move(*slot);
    else
        failed(slot.error());
}

void ClosedLidSuspend::failed(const PlatformError& error) {
    log_("the computer stays awake with its lid shut: " + error.description);
}

} // namespace wakeloft
