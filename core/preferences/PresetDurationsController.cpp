#include "preferences/PresetDurationsController.h"

#include <utility>

namespace wakeloft {

PresetDurationsController::PresetDurationsController(PresetDurationStore& store)
    : store_(store), pinned_(changed_, PresetDurations::pinnedFromSeconds(store.pinnedSeconds())) {}

void PresetDurationsController::pin(const std::vector<AwakeDuration>& durations) {
    auto valid = PresetDurations::validated(PresetDurations::secondsOf(durations));
    if (!valid)
        return;
    store_.setPinnedSeconds(PresetDurations::secondsOf(*valid));
    pinned_.set(std::move(*valid));
}

} // namespace wakeloft
