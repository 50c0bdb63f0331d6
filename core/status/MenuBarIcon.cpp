#include "status/MenuBarIcon.h"

namespace wakeloft {

MenuBarIcon MenuBarIcon::current(bool isOn, std::optional<Date> activeUntil, bool lidClosed) {
    if (!isOn)
        return {};
    return {.isOn = true, .showsTimerBadge = activeUntil.has_value(), .keepsLidClosedAwake = lidClosed};
}

MenuBarIcon::SpokenLabel MenuBarIcon::spokenLabel() const {
    if (!isOn)
        return SpokenLabel::off;
    if (keepsLidClosedAwake)
        return showsTimerBadge ? SpokenLabel::onWithLidClosedAndTimerRunning : SpokenLabel::onWithLidClosed;
    return showsTimerBadge ? SpokenLabel::onWithTimerRunning : SpokenLabel::on;
}

} // namespace wakeloft
