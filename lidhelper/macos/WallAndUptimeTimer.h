#pragma once

#include "lease/LidHelperLoop.h"

#include <memory>

namespace wakeloft {

/// A one-shot timer on two clocks, the wall clock and the uptime: the first to be there fires it. So time
/// asleep counts, a clock that is set back does not hold it up, and one that is set forward hurries it.
class WallAndUptimeTimer final : public OneShotTimer {
  public:
    WallAndUptimeTimer();
    WallAndUptimeTimer(const WallAndUptimeTimer&) = delete;
    WallAndUptimeTimer& operator=(const WallAndUptimeTimer&) = delete;
    ~WallAndUptimeTimer() override;

    void arm(Seconds seconds, std::function<void()> action) override;
    void cancel() override;

  private:
    struct Pending;
    void fire();

    std::shared_ptr<Pending> pending_;
};

} // namespace wakeloft
