#pragma once

#include "lid/LidSleepBlocker.h"

#include <deque>

namespace wakeloft {

/// A helper in memory, for previews and tests: counts, fails on demand and can hold its replies back.
class InMemoryLidSleepBlocker final : public LidSleepBlocker {
  public:
    std::expected<void, Error> prepare() override;
    void renewUntil(Date date, Completion completion) override;
    void revoke(Completion completion) override;
    [[nodiscard]] bool isEngaged() const override { return leaseExpiry.has_value(); }

    /// Gives the oldest reply that is held back; does nothing where there is none.
    void answerNext();
    /// Gives all of them in order, those of requests made meanwhile included.
    void answerAll();
    /// The lease still runs at `date`.
    [[nodiscard]] bool leaseAt(Date date) const { return leaseExpiry && date < *leaseExpiry; }

    std::optional<Date> leaseExpiry;
    int renewCount = 0;   ///< confirmed renewals
    int revokeCount = 0;  ///< answered revokes
    int prepareCount = 0; ///< also of those that failed
    // Each error is used once. Those of requests are taken when asked, not when answered.
    std::optional<Error> nextRenewalError;
    std::optional<Error> nextPreparationError;
    std::optional<Error> nextRevocationError;
    std::function<void()> whilePreparing;
    bool holdsReplies = false;
    std::deque<std::function<void()>> unanswered; ///< replies held back, the oldest first

  private:
    void give(std::function<void()> reply);
};

} // namespace wakeloft
