#pragma once

#include "support/Date.h"

#include <functional>

namespace wakeloft {

/// The one door onto the main thread. Both operations may be called from any thread.
class MainRunLoop {
  public:
    virtual ~MainRunLoop() = default;

    /// Runs `work` on the main thread in a later turn of its loop, never before this call returns.
    virtual void perform(std::function<void()> work) = 0;

    /// The same, at least `seconds` from now (a NaN or negative delay counts as none).
    virtual void performAfter(Seconds seconds, std::function<void()> work) = 0;
};

} // namespace wakeloft
