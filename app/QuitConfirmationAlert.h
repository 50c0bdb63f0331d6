#pragma once

#include "session/DurationFormatter.h"
#include "status/QuitConfirmation.h"
#include "support/Localizer.h"

namespace wakeloft {

/// The question before quitting, as a modal alert of informational style shows it.
struct QuitAlertContent {
    struct Button {
        std::string title;
        std::string keyEquivalent; ///< the one character that its key types, without a modifier

        bool operator==(const Button&) const = default;
    };

    std::string title;
    std::string message;
    Button confirm; ///< the first and default button
    Button cancel;
    bool isRightToLeft = false;

    bool operator==(const QuitAlertContent&) const = default;
};

/// Words the question. Everything handed in must outlive it.
class QuitConfirmationAlert {
  public:
    static constexpr const char* returnKey = "\r";
    static constexpr const char* escapeKey = "\x1b";

    struct Texts {
        std::string title;
        std::string message;
        std::string confirmTitle;

        bool operator==(const Texts&) const = default;
    };

    /// `locale` words the time left.
    QuitConfirmationAlert(const Localizer& localizer, const DurationFormatter& formatter, Locale locale);

    /// Nothing where there is nothing to ask.
    [[nodiscard]] std::optional<QuitAlertContent> makeFor(const QuitConfirmation& confirmation) const;

    [[nodiscard]] Texts awakeMode(std::optional<Seconds> remaining) const;
    [[nodiscard]] Texts deepwake(std::optional<Seconds> remaining) const;

    /// The time left, where there is any, and then what quitting leads to.
    [[nodiscard]] std::string sentences(std::optional<Seconds> remaining,
                                        const std::string& consequence) const;

  private:
    const Localizer& localizer_;
    const DurationFormatter& formatter_;
    Locale locale_;
};

} // namespace wakeloft
