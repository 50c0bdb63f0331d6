#include "StatusTexts.h"

#include "status/AwakeExplanation.h"
#include "status/CountdownText.h"
#include "status/SpokenStatus.h"

#include <utility>

namespace wakeloft {

namespace {

using Table = Localizer::Table;

} // namespace

StatusTexts::StatusTexts(const AwakeController& awake, const Localizer& localizer,
                         const DurationFormatter& formatter, Locale locale)
    : awake_(awake), localizer_(localizer), formatter_(formatter), locale_(std::move(locale)) {}

std::string StatusTexts::explanation(bool keepsLidClosedAwake) const {
    switch (AwakeExplanation::describing(awake_.isOn(), awake_.activeUntil(), keepsLidClosedAwake)) {
    case AwakeExplanation::sleepsNormally:
        return localizer_.text("Your Mac can sleep as usual.");
    case AwakeExplanation::awakeIndefinitely:
        return localizer_.text(
            "Your Mac won't fall asleep on its own. Closing the lid still puts it to sleep.");
    case AwakeExplanation::awakeUntilSessionEnds:
        return localizer_.text("Your Mac won't fall asleep until the session ends. Closing the lid still "
                               "puts it to sleep.");
    case AwakeExplanation::awakeWithLidClosedIndefinitely:
        return localizer_.text(Table::deepwake, "Your Mac won't fall asleep, even with the lid closed.");
    case AwakeExplanation::awakeWithLidClosedUntilSessionEnds:
        return localizer_.text(
            Table::deepwake, "Your Mac won't fall asleep until the session ends, even with the lid closed.");
    }
    return "";
}

std::string StatusTexts::statusLine() const {
    if (!awake_.isOn())
        return localizer_.text("Off");
    const auto remaining = awake_.remaining();
    if (!remaining)
        return localizer_.text("On");
    auto countdown = CountdownText::formatted(*remaining, locale_, formatter_);
    if (localizer_.isRightToLeft())
        countdown = isolatedLeftToRight(countdown);
    return filled(localizer_.text("On · {countdown} left"), "{countdown}", countdown);
}

std::string StatusTexts::spokenStatus() const {
    const auto status = SpokenStatus::describing(awake_.isOn(), awake_.remaining());
    if (const auto* left = std::get_if<SpokenStatus::TimeLeft>(&status.value))
        return filled(localizer_.text("Wakeloft, on, {duration} left"), "{duration}",
                      spokenLabel(left->duration));
    if (std::holds_alternative<SpokenStatus::LessThanAMinuteLeft>(status.value))
        return localizer_.text("Wakeloft, on, less than a minute left");
    return std::holds_alternative<SpokenStatus::On>(status.value) ? localizer_.text("Wakeloft, on")
                                                                  : localizer_.text("Wakeloft, off");
}

std::string StatusTexts::spokenLabel(const MenuBarIcon& icon) const {
    using Label = MenuBarIcon::SpokenLabel;
    switch (icon.spokenLabel()) {
    case Label::off:
        return localizer_.text("Wakeloft: off");
    case Label::on:
        return localizer_.text("Wakeloft: on");
    case Label::onWithTimerRunning:
        return localizer_.text("Wakeloft: on, timer running");
    case Label::onWithLidClosed:
        return localizer_.text(Table::deepwake, "Wakeloft: Deepwake on");
    case Label::onWithLidClosedAndTimerRunning:
        return localizer_.text(Table::deepwake, "Wakeloft: Deepwake on, timer running");
    }
    return "";
}

std::string StatusTexts::label(const AwakeDuration& duration) const {
    return duration.label(locale_, formatter_);
}

std::string StatusTexts::spokenLabel(const AwakeDuration& duration) const {
    return formatter_.units(HoursAndMinutes::rounding(duration.seconds), DurationFormatter::Width::spoken,
                            locale_);
}

// A length of the usual ones has a sentence of its own: whole sentences read better in many languages, and a
// menu that nobody opens costs no formatter.
std::string StatusTexts::command(const AwakeDuration& duration) const {
    constexpr Seconds minute = 60;
    constexpr Seconds hour = 3600;
    if (duration.seconds == 30 * minute)
        return localizer_.text("Stay awake for 30 minutes");
    if (duration.seconds == hour)
        return localizer_.text("Stay awake for 1 hour");
    if (duration.seconds == 2 * hour)
        return localizer_.text("Stay awake for 2 hours");
    if (duration.seconds == 4 * hour)
        return localizer_.text("Stay awake for 4 hours");
    if (duration.seconds == 6 * hour)
        return localizer_.text("Stay awake for 6 hours");
    if (duration.seconds == 8 * hour)
        return localizer_.text("Stay awake for 8 hours");
    return filled(localizer_.text("Stay awake for {duration}"), "{duration}", label(duration));
}

} // namespace wakeloft
