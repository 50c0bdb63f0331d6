#include "BusFlag.h"

#include <cerrno>
#include <utility>

namespace wakeloft {

BusFlag::BusFlag(BusConnection& systemBus, const Address& address, std::function<void()> changed,
                 std::function<void(const PlatformError&)> trouble)
    : systemBus_(systemBus), address_(address), changed_(std::move(changed)), trouble_(std::move(trouble)) {}

void BusFlag::ask() {
    isAskedAgain_ = pending_ != nullptr;
    if (isAskedAgain_)
        return; // the answer on its way may be older than this question
    const auto bus = systemBus_.bus();
    if (!bus)
        return fail(bus.error());
    sd_bus_message* message = nullptr;
    int result = sd_bus_message_new_method_call(*bus, &message, address_.service, address_.path,
                                                "org.freedesktop.DBus.Properties", "Get");
    const BusMessage call(message);
    if (result >= 0)
        result = sd_bus_message_set_auto_start(message, 0);
    if (result >= 0)
        result = sd_bus_message_append(message, "ss", address_.interface, address_.property);
    if (result < 0)
        return fail(busFailure("A property cannot be asked for", result));
    auto slot = callBusLater(*bus, message, [this](sd_bus_message* reply) { answered(reply); });
    if (!slot)
        return fail(slot.error());
    pending_ = std::move(*slot);
}

void BusFlag::forget() {
    pending_.reset();
    isAskedAgain_ = false;
    set(std::nullopt);
}

void BusFlag::answered(sd_bus_message* reply) {
    pending_.reset();
    if (isAskedAgain_)
        ask();
    const auto* error = sd_bus_message_get_error(reply);
    int value = 0;
    const int result = error != nullptr ? -EIO : sd_bus_message_read(reply, "v", "b", &value);
    if (result >= 0) {
        latestTrouble_.clear();
        set(value != 0);
    } else if (isNobodyThere(error)) {
        set(std::nullopt);
    } else {
        fail(busFailure(std::string(address_.service) + " does not tell its " + address_.property, error,
                        result));
    }
}

void BusFlag::fail(const PlatformError& error) {
    if (std::exchange(latestTrouble_, error.description) != error.description)
        trouble_(error);
    set(std::nullopt);
}

void BusFlag::set(std::optional<bool> value) {
    if (std::exchange(value_, value) != value)
        changed_();
}

} // namespace wakeloft
