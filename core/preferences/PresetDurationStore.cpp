#include "preferences/PresetDurationStore.h"

namespace wakeloft {

std::optional<std::vector<Seconds>> UserDefaultsPresetDurationStore::pinnedSeconds() const {
    const auto stored = defaults_.value(key);
    const auto* list = stored ? std::get_if<DefaultsValue::List>(&stored->value) : nullptr;
    if (list == nullptr)
        return std::nullopt;
    std::vector<Seconds> seconds;
    for (const auto& each : *list) {
        const auto* number = std::get_if<double>(&each.value);
        if (number == nullptr)
            return std::nullopt;
        seconds.push_back(*number);
    }
    return seconds;
}

void UserDefaultsPresetDurationStore::setPinnedSeconds(const std::optional<std::vector<Seconds>>& seconds) {
    if (!seconds) {
        defaults_.remove(key);
        return;
    }
    DefaultsValue::List list;
    for (const auto each : *seconds)
        list.push_back({each});
    defaults_.set(key, {std::move(list)});
}

} // namespace wakeloft
