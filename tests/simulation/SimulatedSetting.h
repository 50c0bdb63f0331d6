#pragma once

#include "lease/SystemSleepSetting.h"
#include "simulation/VirtualTime.h"

namespace wakeloft {

/// The system's sleep setting, with others who write it, and with reads and writes that fail or hang. It
/// outlives every helper: what a helper that died has left stays.
class SimulatedSetting final : public SystemSleepSetting {
  public:
    SimulatedSetting(VirtualTime& time, Chance& chance) : time_(time), chance_(chance) {}

    std::expected<void, PlatformError> writeDisabled(bool disabled) override;
    std::expected<bool, PlatformError> readDisabled() override;
    void writeAsForeigner(bool disabled, bool helperMayTakeItForItsOwn);

    [[nodiscard]] bool isDisabled() const { return isDisabled_; }
    /// How often a helper has turned it on.
    [[nodiscard]] int timesOn() const { return timesOn_; }
    /// Somebody else has set it, and no helper may write over that.
    [[nodiscard]] bool isForeign() const { return isDisabled_ && isForeign_; }
    /// A helper that starts puts the setting back whoever set it, however many tries that takes.
    void helperStarts() { isHelperStarting_ = true; }
    [[nodiscard]] bool wasForeignOverwritten() const { return wasForeignOverwritten_; }

    unsigned failingWrites = 0; ///< percent
    unsigned failingReads = 0;  ///< percent
    unsigned hangs = 0;         ///< percent of the failures take their whole limit

  private:
    bool fails(unsigned percent, Seconds limit);

    VirtualTime& time_;
    Chance& chance_;
    bool isDisabled_ = false;
    bool isForeign_ = false;
    int timesOn_ = 0;
    bool isHelperStarting_ = false;
    bool wasForeignOverwritten_ = false;
};

} // namespace wakeloft
