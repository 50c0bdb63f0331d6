#include "QuitConfirmationAlert.h"

#include "session/AwakeDuration.h"

#include <utility>

namespace wakeloft {

using Table = Localizer::Table;

QuitConfirmationAlert::QuitConfirmationAlert(const Localizer& localizer, const DurationFormatter& formatter,
                                             Locale locale)
    : localizer_(localizer), formatter_(formatter), locale_(std::move(locale)) {}

std::optional<QuitAlertContent> QuitConfirmationAlert::makeFor(const QuitConfirmation& confirmation) const {
    Texts texts;
    if (const auto* awake = std::get_if<QuitConfirmation::AwakeMode>(&confirmation.value))
        texts = awakeMode(awake->remaining);
    else if (const auto* lid = std::get_if<QuitConfirmation::Deepwake>(&confirmation.value))
        texts = deepwake(lid->remaining);
    else
        return std::nullopt;
    return QuitAlertContent{.title = std::move(texts.title),
                            .message = std::move(texts.message),
                            .confirm = {std::move(texts.confirmTitle), returnKey},
                            .cancel = {localizer_.text("Cancel"), escapeKey},
                            .isRightToLeft = localizer_.isRightToLeft()};
}

QuitConfirmationAlert::Texts QuitConfirmationAlert::awakeMode(std::optional<Seconds> remaining) const {
    return {localizer_.text("Quit and stop awake mode?"),
            sentences(remaining, localizer_.text("Your Mac can fall asleep on its own again. Awake mode "
                                                 "turns back on the next time you open Wakeloft.")),
            localizer_.text("Quit")};
}

QuitConfirmationAlert::Texts QuitConfirmationAlert::deepwake(std::optional<Seconds> remaining) const {
    return {localizer_.text(Table::deepwake, "Quit and end Deepwake?"),
            sentences(remaining,
                      localizer_.text(Table::deepwake,
                                      "Your Mac can sleep again with the lid open or closed. Awake mode "
                                      "turns back on the next time you open Wakeloft. Deepwake stays off.")),
            localizer_.text(Table::deepwake, "Quit and end Deepwake")};
}

std::string QuitConfirmationAlert::sentences(std::optional<Seconds> remaining,
                                             const std::string& consequence) const {
    if (!remaining)
        return consequence;
    const auto label = AwakeDuration{*remaining}.label(locale_, formatter_);
    return filled(localizer_.text("{label} left in this session."), "{label}", label) + " " + consequence;
}

} // namespace wakeloft
