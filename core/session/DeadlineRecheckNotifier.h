#pragma once

#include <functional>

namespace wakeloft {

/// Tells when a deadline must be judged again: after a wake and after the clock was set. Main thread.
class DeadlineRecheckNotifier {
  public:
    virtual ~DeadlineRecheckNotifier() = default;

    /// Only the latest handler is told.
    virtual void observe(std::function<void()> handler) = 0;
};

} // namespace wakeloft
