#pragma once

#include "session/AwakeController.h"
#include "session/AwakeDuration.h"
#include "status/MenuBarIcon.h"
#include "support/Locale.h"
#include "support/Localizer.h"

#include <string>

namespace wakeloft {

/// The session's state in the user's words. Main thread. Everything handed in must outlive it.
class StatusTexts {
  public:
    StatusTexts(const AwakeController& awake, const Localizer& localizer, const DurationFormatter& formatter,
                Locale locale);

    [[nodiscard]] std::string explanation(bool keepsLidClosedAwake) const;
    /// "On", "Off", or with the time that is left to the second.
    [[nodiscard]] std::string statusLine() const;
    /// The header for a screen reader.
    [[nodiscard]] std::string spokenStatus() const;
    /// The icon for a screen reader.
    [[nodiscard]] std::string spokenLabel(const MenuBarIcon& icon) const;
    [[nodiscard]] std::string label(const AwakeDuration& duration) const;
    [[nodiscard]] std::string spokenLabel(const AwakeDuration& duration) const;
    /// The whole command to stay awake for `duration`.
    [[nodiscard]] std::string command(const AwakeDuration& duration) const;

  private:
    const AwakeController& awake_;
    const Localizer& localizer_;
    const DurationFormatter& formatter_;
    Locale locale_;
};

} // namespace wakeloft
