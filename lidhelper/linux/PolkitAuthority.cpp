#include "PolkitAuthority.h"

#include "PolkitCheck.h"

#include <utility>

namespace wakeloft {

namespace {

std::optional<std::string> refusalIn(sd_bus_message* reply) {
    const auto isAuthorized = PolkitCheck::isAuthorized(reply);
    if (!isAuthorized)
        return isAuthorized.error().description;
    if (!*isAuthorized)
        return "Only who sits at this computer may keep it awake with the lid closed.";
    return std::nullopt;
}

} // namespace

void PolkitAuthority::check(const std::string& uniqueName, const Decided& decided) {
    const auto call = PolkitCheck::call(bus_, uniqueName, action_);
    const auto number = ++lastCheck_;
    auto slot = call ? callBusLater(bus_, call->get(),
                                    [this, number, decided](sd_bus_message* reply) {
                                        pending_.erase(number);
                                        decided(refusalIn(reply));
                                    })
                     : std::unexpected(call.error());
    if (slot)
        pending_.emplace(number, std::move(*slot));
    else
        decided(slot.error().description);
}

} // namespace wakeloft
