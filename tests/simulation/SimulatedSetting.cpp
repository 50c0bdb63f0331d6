#include "simulation/SimulatedSetting.h"

#include "lease/LidSleepLease.h"

namespace wakeloft {

std::expected<void, PlatformError> SimulatedSetting::writeDisabled(bool disabled) {
    const bool isFailing = fails(failingWrites, LidSleepLease::writeTimeout);
    constexpr unsigned doneAllTheSame = 20;
    if (isFailing && !chance_.percent(doneAllTheSame))
        return std::unexpected(PlatformError{"simulation", 5, "The write did not work."});
    if (isForeign() && !isHelperStarting_)
        wasForeignOverwritten_ = true;
    if (disabled && !isDisabled_)
        ++timesOn_;
    isDisabled_ = disabled;
    isForeign_ = false;
    isHelperStarting_ = isHelperStarting_ && isFailing;
    if (isFailing)
        return std::unexpected(PlatformError{"simulation", 6, "The write was not confirmed."});
    return {};
}

std::expected<bool, PlatformError> SimulatedSetting::readDisabled() {
    if (fails(failingReads, LidSleepLease::readTimeout))
        return std::unexpected(PlatformError{"simulation", 7, "The read did not work."});
    return isDisabled_;
}

void SimulatedSetting::writeAsForeigner(bool disabled, bool helperMayTakeItForItsOwn) {
    if (disabled && !isDisabled_)
        isForeign_ = !helperMayTakeItForItsOwn;
    isDisabled_ = disabled;
}

bool SimulatedSetting::fails(unsigned percent, Seconds limit) {
    if (!chance_.percent(percent))
        return false;
    if (chance_.percent(hangs))
        time_.spend(limit);
    return true;
}

} // namespace wakeloft
