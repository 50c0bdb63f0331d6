#pragma once

#include "SettingsContent.h"
#include "preferences/AboutInfo.h"
#include "session/Clocks.h"
#include "support/Localizer.h"

namespace wakeloft {

/// What the program says of itself. Main thread. Everything handed in must outlive it.
class AboutPopup {
  public:
    AboutPopup(const Localizer& localizer, std::optional<AboutInfo> info, const DateProvider& dates,
               const TimeZone& timeZone);

    [[nodiscard]] AboutPopupContent content() const;

  private:
    const Localizer& localizer_;
    std::optional<AboutInfo> info_;
    const DateProvider& dates_;
    const TimeZone& timeZone_;
};

} // namespace wakeloft
