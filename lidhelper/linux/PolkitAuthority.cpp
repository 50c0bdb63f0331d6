#include "PolkitAuthority.h"

#include <cerrno>
#include <utility>

namespace wakeloft {

namespace {

constexpr const char* unanswered = "polkit cannot be asked whether this is allowed";

std::optional<std::string> refusalIn(sd_bus_message* reply) {
    if (const auto* error = sd_bus_message_get_error(reply))
        return busFailure(unanswered, error, -EIO).description;
    int isAuthorized = 0;
    int result = sd_bus_message_enter_container(reply, 'r', "bba{ss}");
    if (result >= 0)
        result = sd_bus_message_read(reply, "b", &isAuthorized);
    if (result < 0)
        return busFailure(unanswered, result).description;
    if (isAuthorized == 0)
        return "Only who sits at this computer may keep it awake with the lid closed.";
    return std::nullopt;
}

} // namespace

void PolkitAuthority::check(const std::string& uniqueName, const Decided& decided) {
    const auto call = checkCall(uniqueName);
    const auto number = ++lastCheck_;
    auto slot = call == nullptr
                    ? std::unexpected(busFailure(unanswered, -ENOMEM))
                    : callBusLater(bus_, call.get(), [this, number, decided](sd_bus_message* reply) {
                          pending_.erase(number);
                          decided(refusalIn(reply));
                      });
    if (slot)
        pending_.emplace(number, std::move(*slot));
    else
        decided(slot.error().description);
}

BusMessage PolkitAuthority::checkCall(const std::string& uniqueName) const {
    constexpr std::uint32_t withoutInteraction = 0;
    sd_bus_message* message = nullptr;
    int result = sd_bus_message_new_method_call(bus_, &message, "org.freedesktop.PolicyKit1",
                                                "/org/freedesktop/PolicyKit1/Authority",
                                                "org.freedesktop.PolicyKit1.Authority", "CheckAuthorization");
    BusMessage call(message);
    if (result >= 0)
        result = sd_bus_message_append(message, "(sa{sv})sa{ss}us", "system-bus-name", 1, "name", "s",
                                       uniqueName.c_str(), action_.c_str(), 0, withoutInteraction, "");
    return result < 0 ? nullptr : std::move(call);
}

} // namespace wakeloft
