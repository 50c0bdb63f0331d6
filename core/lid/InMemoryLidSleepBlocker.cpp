#include "lid/InMemoryLidSleepBlocker.h"

#include <utility>

namespace wakeloft {

std::expected<void, Error> InMemoryLidSleepBlocker::prepare() {
    ++prepareCount;
    if (whilePreparing)
        whilePreparing();
    if (auto error = std::exchange(nextPreparationError, std::nullopt))
        return std::unexpected(std::move(*error));
    return {};
}

void InMemoryLidSleepBlocker::renewUntil(Date date, Completion completion) {
    give([this, date, completion = std::move(completion),
          error = std::exchange(nextRenewalError, std::nullopt)] {
        if (!error) {
            leaseExpiry = date;
            ++renewCount;
        }
        completion(error);
    });
}

void InMemoryLidSleepBlocker::revoke(Completion completion) {
    give(
        [this, completion = std::move(completion), error = std::exchange(nextRevocationError, std::nullopt)] {
            leaseExpiry.reset();
            ++revokeCount;
            completion(error);
        });
}

void InMemoryLidSleepBlocker::answerNext() {
    if (unanswered.empty())
        return;
    const auto reply = std::move(unanswered.front());
    unanswered.pop_front();
    reply();
}

void InMemoryLidSleepBlocker::answerAll() {
    while (!unanswered.empty())
        answerNext();
}

void InMemoryLidSleepBlocker::give(std::function<void()> reply) {
    if (holdsReplies || !unanswered.empty())
        unanswered.push_back(std::move(reply));
    else
        reply();
}

} // namespace wakeloft
