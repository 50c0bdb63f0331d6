#pragma once

#include "preferences/PresetDurationStore.h"
#include "preferences/PresetDurations.h"
#include "support/Observable.h"

namespace wakeloft {

/// The starred lengths, as the panel offers them. Main thread.
class PresetDurationsController {
  public:
    /// `store` must outlive it. The default choice is not written to it.
    explicit PresetDurationsController(PresetDurationStore& store);
    PresetDurationsController(const PresetDurationsController&) = delete;
    PresetDurationsController& operator=(const PresetDurationsController&) = delete;
    ~PresetDurationsController() = default;

    /// Stores and shows the choice; a choice that is not valid is ignored.
    void pin(const std::vector<AwakeDuration>& durations);

    /// Shortest first.
    [[nodiscard]] const std::vector<AwakeDuration>& pinned() const { return pinned_.get(); }
    Signal& changed() { return changed_; }

  private:
    Signal changed_;
    PresetDurationStore& store_;
    Observable<std::vector<AwakeDuration>> pinned_;
};

} // namespace wakeloft
