#pragma once

#include <algorithm>
#include <chrono>

namespace wakeloft {

/// How often a client may ask: so many times at once, and then so many times a second. What is done by hand,
/// and the renewals of a lease, are far below it.
class RequestAllowance {
  public:
    using Clock = std::chrono::steady_clock;
    static constexpr double mostAtOnce = 32;
    static constexpr double perSecond = 5;

    /// Whether one more request is allowed; takes it off if so.
    bool take(Clock::time_point now) {
        const double passed = std::chrono::duration<double>(now - countedAt_).count();
        left_ = std::min(mostAtOnce, left_ + perSecond * passed);
        countedAt_ = now;
        if (left_ < 1)
            return false;
        left_ -= 1;
        return true;
    }

  private:
    double left_ = mostAtOnce;
    Clock::time_point countedAt_ = Clock::now();
};

} // namespace wakeloft
