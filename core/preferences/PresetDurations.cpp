#include "preferences/PresetDurations.h"

#include <algorithm>

namespace wakeloft {

namespace {

std::vector<AwakeDuration> durationsOf(const std::set<Seconds>& seconds) {
    std::vector<AwakeDuration> durations;
    durations.reserve(seconds.size());
    for (const auto each : seconds)
        durations.push_back({each});
    return durations;
}

bool isCandidate(Seconds seconds) {
    return std::ranges::find(PresetDurations::candidates, seconds, &AwakeDuration::seconds) !=
           PresetDurations::candidates.end();
}

} // namespace

std::optional<std::vector<AwakeDuration>> PresetDurations::validated(const std::vector<Seconds>& seconds) {
    // Candidates first: a NaN must not get into a set.
    if (seconds.size() > pinnedCount || !std::ranges::all_of(seconds, isCandidate))
        return std::nullopt;
    const std::set<Seconds> sorted(seconds.begin(), seconds.end());
    if (sorted.size() < seconds.size())
        return std::nullopt;
    return durationsOf(sorted);
}

std::vector<AwakeDuration>
PresetDurations::pinnedFromSeconds(const std::optional<std::vector<Seconds>>& seconds) {
    if (seconds)
        if (auto durations = validated(*seconds))
            return std::move(*durations);
    return {AwakeDuration::presets.begin(), AwakeDuration::presets.end()};
}

std::vector<Seconds> PresetDurations::secondsOf(const std::vector<AwakeDuration>& durations) {
    std::vector<Seconds> seconds;
    seconds.reserve(durations.size());
    for (const auto& duration : durations)
        seconds.push_back(duration.seconds);
    return seconds;
}

PresetDurations::PresetDurations(const std::vector<AwakeDuration>& pinned) {
    for (const auto& duration : pinnedFromSeconds(secondsOf(pinned)))
        chosen_.insert(duration.seconds);
}

std::vector<AwakeDuration> PresetDurations::pinned() const {
    return durationsOf(chosen_);
}

bool PresetDurations::isChosen(AwakeDuration duration) const {
    return isCandidate(duration.seconds) && chosen_.contains(duration.seconds);
}

bool PresetDurations::canToggle(AwakeDuration duration) const {
    return isCandidate(duration.seconds) && (isChosen(duration) || chosen_.size() < pinnedCount);
}

void PresetDurations::toggle(AwakeDuration duration) {
    if (!canToggle(duration))
        return;
    if (chosen_.erase(duration.seconds) == 0)
        chosen_.insert(duration.seconds);
}

} // namespace wakeloft
