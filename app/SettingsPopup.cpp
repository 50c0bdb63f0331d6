#include "SettingsPopup.h"

#include <utility>

namespace wakeloft {

SettingsPopup::SettingsPopup(PresetDurationsController& presets, const Localizer& localizer,
                             const DurationFormatter& formatter, Locale locale)
    : presets_(presets), localizer_(localizer), formatter_(formatter), locale_(std::move(locale)) {}

SettingsPopupContent SettingsPopup::content() const {
    using Width = DurationFormatter::Width;
    const PresetDurations choice(presets_.pinned());
    SettingsPopupContent content;
    content.title = localizer_.text("Preset durations");
    for (const auto& duration : PresetDurations::candidates)
        content.rows.push_back({.duration = duration,
                                .label = duration.label(locale_, formatter_),
                                .spokenLabel = formatter_.units(HoursAndMinutes::rounding(duration.seconds),
                                                                Width::spoken, locale_),
                                .symbol = choice.isChosen(duration) ? "star.fill" : "star",
                                .isStarred = choice.isChosen(duration),
                                .isEnabled = choice.canToggle(duration)});
    content.hint = localizer_.text("Star up to three. If you don't star any, the panel shows no presets.");
    content.isRightToLeft = localizer_.isRightToLeft();
    return content;
}

void SettingsPopup::toggle(AwakeDuration duration) {
    PresetDurations choice(presets_.pinned());
    choice.toggle(duration);
    presets_.pin(choice.pinned());
}

} // namespace wakeloft
