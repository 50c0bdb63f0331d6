#pragma once

#include "session/AwakeDuration.h"

#include <array>
#include <cstddef>
#include <optional>
#include <set>
#include <vector>

namespace wakeloft {

/// Which lengths the user has starred. None at all is a choice too: the panel then shows no presets.
class PresetDurations {
  public:
    /// What may be starred, as it is offered.
    static constexpr std::array<AwakeDuration, 6> candidates = {
        {{1800}, {3600}, {7200}, {14400}, {21600}, {28800}}};
    /// The most that can be starred.
    static constexpr std::size_t pinnedCount = 3;

    /// The one gate of every choice, stored or asked for: the lengths, shortest first. Nothing where there
    /// are too many, where one is repeated or where one is no candidate.
    static std::optional<std::vector<AwakeDuration>> validated(const std::vector<Seconds>& seconds);

    /// The stored choice; the default one where there is none or where it is not valid.
    static std::vector<AwakeDuration> pinnedFromSeconds(const std::optional<std::vector<Seconds>>& seconds);

    static std::vector<Seconds> secondsOf(const std::vector<AwakeDuration>& durations);

    /// The default choice where the given one is not valid.
    explicit PresetDurations(const std::vector<AwakeDuration>& pinned);

    /// Shortest first.
    [[nodiscard]] std::vector<AwakeDuration> pinned() const;
    [[nodiscard]] bool isChosen(AwakeDuration duration) const;
    /// It has a star to lose, or there is one left to give.
    [[nodiscard]] bool canToggle(AwakeDuration duration) const;
    /// Does nothing where `canToggle` is false.
    void toggle(AwakeDuration duration);

    bool operator==(const PresetDurations&) const = default;

  private:
    std::set<Seconds> chosen_;
};

} // namespace wakeloft
