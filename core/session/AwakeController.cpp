#include "session/AwakeController.h"

#include "support/MainThread.h"

#include <algorithm>
#include <utility>

namespace wakeloft {

AwakeController::AwakeController(SleepBlocker& blocker, AwakeIntentStore& store, const DateProvider& dates,
                                 const ContinuousTimeProvider& continuous, DeadlineScheduler& scheduler,
                                 DeadlineRecheckNotifier& recheck, bool restoringPreviousState)
    : blocker_(blocker), store_(store), dates_(dates), continuous_(continuous), scheduler_(scheduler) {
    const auto stored = store_.load();
    const auto off = StoredAwakeIntent::intent(AwakeIntent::off());
    auto deadline = stored.deadline();
    const bool isGarbled =
        stored == StoredAwakeIntent::unreadableDeadline() || (deadline && !AwakeIntent::isUsable(*deadline));
    const bool isStale = isGarbled || (deadline && dates_.now() >= *deadline);
    if (isStale)
        deadline.reset();

    isRequested_.set(stored != off);
    activeUntil_.set(deadline);
    activeUntilContinuous_.set(continuousDeadline(deadline));
    recheck.observe(lifetime_.guard([this] { checkExpiry(); }));
    blocker_.observeHold(
        lifetime_.guard([this](const std::expected<void, Error>& hold) { holdChanged(hold); }));

    if (!restoringPreviousState || stored == off)
        return;
    if (isStale)
        turnOff(); // cleans a lapsed or garbled record away
    else
        activate(deadline, false);
}

void AwakeController::toggle() {
    if (isOn())
        turnOff();
    else
        activate(std::nullopt, true);
}

void AwakeController::turnOnFor(std::optional<Seconds> seconds) {
    if (!seconds) {
        activate(std::nullopt, true);
        return;
    }
    if (const auto deadline = AwakeIntent::deadlineAfter(*seconds, dates_.now()))
        activate(deadline, true);
    else
        turnOff();
}

void AwakeController::turnOff() {
    const Signal::Batch batch(changed_);
    scheduler_.cancel();
    store_.save(AwakeIntent::off());
    isRequested_.set(false);
    activeUntil_.set(std::nullopt);
    activeUntilContinuous_.set(std::nullopt);
    lastFailure_.set(std::nullopt);
    limitation_.set(std::nullopt);
    // A lost hold is let go as well, or the blocker would take it again when it can.
    if (isOn() || std::exchange(isHoldLost_, false)) {
        blocker_.release();
        isOn_.set(false);
    }
    tellSessionObservers();
}

void AwakeController::checkExpiry() {
    const auto end = endsAt();
    if (!end)
        return;
    if (dates_.now() >= *end)
        turnOff();
    else
        arm(*end);
}

void AwakeController::observeSession(std::function<void()> observer) {
    sessionObservers_.push_back(std::move(observer));
}

std::optional<Date> AwakeController::endsAt() const {
    const auto deadline = activeUntil();
    const auto continuousDeadline = activeUntilContinuous_.get();
    if (!deadline || !continuousDeadline)
        return deadline;
    requireMainThread("AwakeController::endsAt");
    const Seconds continuousLeft = *continuousDeadline - continuous_.continuousTime();
    const Date now = dates_.now();
    return continuousLeft < *deadline - now ? now + continuousLeft : *deadline;
}

std::optional<Seconds> AwakeController::remaining() const {
    const auto end = endsAt();
    return end ? std::optional(std::max(0.0, *end - dates_.now())) : std::nullopt;
}

void AwakeController::activate(std::optional<Date> deadline, bool recording) {
    const Signal::Batch batch(changed_);
    if (recording)
        store_.save(deadline ? AwakeIntent::until(*deadline) : AwakeIntent::indefinite());
    isRequested_.set(true);
    activeUntil_.set(deadline);
    activeUntilContinuous_.set(continuousDeadline(deadline));
    if (!isOn())
        engage();
    if (const auto end = endsAt())
        arm(*end);
    else
        scheduler_.cancel();
    tellSessionObservers();
}

// A refused start undoes nothing: the request stays saved and its deadline armed, so it still ends on time.
void AwakeController::engage() {
    const auto engaged = blocker_.engage();
    isOn_.set(engaged.has_value());
    lastFailure_.set(engaged ? std::nullopt : std::optional(AwakeFailure(engaged.error())));
    const auto limitation = engaged ? blocker_.limitation() : std::nullopt;
    limitation_.set(limitation ? std::optional(AwakeFailure(*limitation)) : std::nullopt);
    if (engaged)
        isHoldLost_ = false;
}

void AwakeController::holdChanged(const std::expected<void, Error>& hold) {
    if (!isOn() && !isHoldLost_)
        return; // a late word about a hold that was let go
    const Signal::Batch batch(changed_);
    const bool wasOn = isOn();
    isHoldLost_ = !hold;
    isOn_.set(hold.has_value());
    lastFailure_.set(hold ? std::nullopt : std::optional(AwakeFailure(hold.error())));
    const auto limitation = hold ? blocker_.limitation() : std::nullopt;
    limitation_.set(limitation ? std::optional(AwakeFailure(*limitation)) : std::nullopt);
    if (wasOn != isOn())
        tellSessionObservers();
}

void AwakeController::arm(Date date) {
    scheduler_.scheduleAt(date, lifetime_.guard([this] { checkExpiry(); }));
}

// By index: an observer may register another, who is told from the next time on.
void AwakeController::tellSessionObservers() {
    for (std::size_t index = 0, count = sessionObservers_.size(); index < count; ++index) {
        const auto observer = sessionObservers_[index];
        observer();
    }
}

std::optional<Seconds> AwakeController::continuousDeadline(std::optional<Date> deadline) const {
    if (!deadline)
        return std::nullopt;
    requireMainThread("AwakeController's continuous deadline");
    const Seconds now = continuous_.continuousTime();
    return now + (*deadline - dates_.now());
}

} // namespace wakeloft
