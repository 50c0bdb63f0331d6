#pragma once

#include "SettingsContent.h"
#include "preferences/PresetDurationsController.h"
#include "support/Localizer.h"

namespace wakeloft {

/// Stars the durations that the panel offers. Main thread. Everything handed in must outlive it.
class SettingsPopup {
  public:
    SettingsPopup(PresetDurationsController& presets, const Localizer& localizer,
                  const DurationFormatter& formatter, Locale locale);

    [[nodiscard]] SettingsPopupContent content() const;

    /// Gives the duration a star or takes it away; refuses a star too many silently, as its row is disabled.
    void toggle(AwakeDuration duration);

    /// The content may have changed.
    Signal& changed() { return presets_.changed(); }

  private:
    PresetDurationsController& presets_;
    const Localizer& localizer_;
    const DurationFormatter& formatter_;
    Locale locale_;
};

} // namespace wakeloft
