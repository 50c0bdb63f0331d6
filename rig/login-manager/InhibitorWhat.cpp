#include "InhibitorWhat.h"

#include <algorithm>
#include <array>
#include <utility>

namespace wakeloft::rig {
namespace {

constexpr std::array<std::pair<std::string_view, InhibitorWhat>, 8> names = {{
    {"shutdown", InhibitorWhat::shutdown},
    {"sleep", InhibitorWhat::sleep},
    {"idle", InhibitorWhat::idle},
    {"handle-power-key", InhibitorWhat::handlePowerKey},
    {"handle-suspend-key", InhibitorWhat::handleSuspendKey},
    {"handle-hibernate-key", InhibitorWhat::handleHibernateKey},
    {"handle-lid-switch", InhibitorWhat::handleLidSwitch},
    {"handle-reboot-key", InhibitorWhat::handleRebootKey},
}};

} // namespace

InhibitorWhat operator|(InhibitorWhat left, InhibitorWhat right) {
    return static_cast<InhibitorWhat>(std::to_underlying(left) | std::to_underlying(right));
}

bool holdsAny(InhibitorWhat set, InhibitorWhat operations) {
    return (std::to_underlying(set) & std::to_underlying(operations)) != 0;
}

std::optional<InhibitorWhat> parseWhat(std::string_view text) {
    InhibitorWhat set = InhibitorWhat::none;
    for (bool isLast = false; !isLast;) {
        const auto colon = text.find(':');
        isLast = colon == std::string_view::npos;
        const auto* found =
            std::ranges::find(names, text.substr(0, colon), [](const auto& entry) { return entry.first; });
        if (found == names.end()) {
            return std::nullopt;
        }
        set = set | found->second;
        text.remove_prefix(isLast ? text.size() : colon + 1);
    }
    return set;
}

std::string toString(InhibitorWhat set) {
    std::string text;
    for (const auto& [name, operation] : names) {
        if (holdsAny(set, operation)) {
            text.append(text.empty() ? "" : ":").append(name);
        }
    }
    return text;
}

} // namespace wakeloft::rig
