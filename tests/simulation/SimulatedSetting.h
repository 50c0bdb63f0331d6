#pragma once

#include "lease/LidSleepLease.h"
#include "lease/SystemSleepSetting.h"
#include "simulation/Chance.h"
#include "twins/LeaseTwins.h"

namespace wakeloft {

/// The system's sleep setting, with others who write it, and with reads and writes that fail or hang. It
/// outlives every helper: what a helper that died has left stays.
class SimulatedSetting final : public SystemSleepSetting {
  public:
    SimulatedSetting(ManualRunLoop& time, Chance& chance) : time_(time), chance_(chance) {}

    std::expected<void, PlatformError> writeDisabled(bool disabled) override {
        const bool isFailing = fails(failingWrites, LidSleepLease::writeTimeout);
        constexpr unsigned doneAllTheSame = 20;
        if (isFailing && !chance_.percent(doneAllTheSame))
            return std::unexpected(PlatformError{"simulation", 5, "The write did not work."});
        if (isForeign() && !isHelperStarting)
            wasForeignOverwritten = true;
        if (disabled && !isDisabled)
            ++timesOn;
        isDisabled = disabled;
        isForeign_ = false;
        isHelperStarting = isHelperStarting && isFailing;
        if (isFailing)
            return std::unexpected(PlatformError{"simulation", 6, "The write was not confirmed."});
        return {};
    }
    std::expected<bool, PlatformError> readDisabled() override {
        if (fails(failingReads, LidSleepLease::readTimeout))
            return std::unexpected(PlatformError{"simulation", 7, "The read did not work."});
        return isDisabled;
    }
    void writeAsForeigner(bool disabled, bool helperMayTakeItForItsOwn) {
        if (disabled && !isDisabled)
            isForeign_ = !helperMayTakeItForItsOwn;
        isDisabled = disabled;
    }
    /// Somebody else has set it, and no helper may write over that.
    [[nodiscard]] bool isForeign() const { return isDisabled && isForeign_; }

    unsigned failingWrites = 0; ///< percent
    unsigned failingReads = 0;  ///< percent
    unsigned hangs = 0;         ///< percent of the failures take their whole limit

    bool isDisabled = false;
    int timesOn = 0; ///< how often a helper has turned it on
    /// A helper that starts puts the setting back whoever set it, however many tries that takes.
    bool isHelperStarting = false;
    bool wasForeignOverwritten = false;

  private:
    bool fails(unsigned percent, Seconds limit) {
        const bool isFailing = chance_.percent(percent);
        if (isFailing && chance_.percent(hangs))
            time_.clocks.pass(limit);
        return isFailing;
    }

    ManualRunLoop& time_;
    Chance& chance_;
    bool isForeign_ = false;
};

} // namespace wakeloft
