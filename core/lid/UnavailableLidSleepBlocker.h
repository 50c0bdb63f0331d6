#pragma once

#include "lid/LidSleepBlocker.h"

namespace wakeloft {

/// A blocker with no helper behind it: every renewal fails at once, and there is nothing to give back.
class UnavailableLidSleepBlocker final : public LidSleepBlocker {
  public:
    void renewUntil(Date /*date*/, Completion completion) override {
        completion(LidSleepBlockerError::helperUnavailable());
    }
    void revoke(Completion completion) override { completion(std::nullopt); }
    [[nodiscard]] bool isEngaged() const override { return false; }
};

} // namespace wakeloft
