#include "lid/LidAwakeController.h"

#include "lease/LidSleepLease.h"
#include "support/MainThread.h"

#include <utility>

namespace wakeloft {

LidAwakeController::LidAwakeController(AwakeController& awake, LidSleepBlocker& blocker, LidAwakeStore& store,
                                       const MachineConditions& conditions,
                                       MachineConditionsNotifier& conditionsNotifier,
                                       const DateProvider& dates, DeadlineScheduler& scheduler,
                                       DeadlineScheduler& deadlineScheduler)
    : hasAcknowledgedHeatWarning_(changed_, store.hasAcknowledgedHeatWarning()),
      machineConditions_(changed_, conditions.snapshot()),
      awake_(awake),
      blocker_(blocker),
      store_(store),
      machine_(conditions),
      dates_(dates),
      scheduler_(scheduler),
      deadlineScheduler_(deadlineScheduler) {
    conditionsNotifier.observe(lifetime_.guard([this] { refreshConditions(); }));
    // A session that is lengthened, shortened or stopped takes Deepwake's end with it.
    awake_.observeSession(lifetime_.guard([this] {
        if (isWanted())
            armDeadline();
    }));
}

bool LidAwakeController::turnOnFor(std::optional<Seconds> seconds) {
    return start(seconds, Session::started);
}

bool LidAwakeController::turnOnJoiningSessionOr(std::optional<Seconds> seconds) {
    return start(seconds, Session::joined);
}

void LidAwakeController::turnOff() {
    requireMainThread("LidAwakeController::turnOff");
    const Signal::Batch batch(changed_);
    scheduler_.cancel();
    deadlineScheduler_.cancel();
    ++switchOffs_;
    const bool wasRenewing = std::exchange(isRenewing_, false);
    isTurningOn_.set(false);
    startFailure_.set(std::nullopt);
    const bool isResetPending = unconfirmedReset_.get() && givingBack_ == 0;
    if (!isOn() && !wasRenewing && !isResetPending)
        return;
    isOn_.set(false);
    giveBack();
}

void LidAwakeController::acknowledgeHeatWarning() {
    store_.setHasAcknowledgedHeatWarning(true);
    hasAcknowledgedHeatWarning_.set(true);
}

void LidAwakeController::refresh() {
    const Signal::Batch batch(changed_);
    hasAcknowledgedHeatWarning_.set(store_.hasAcknowledgedHeatWarning());
    refreshConditions();
}

void LidAwakeController::checkLease() {
    requireMainThread("LidAwakeController::checkLease");
    const Signal::Batch batch(changed_);
    if (!isWanted()) {
        if (unconfirmedReset_.get() && givingBack_ == 0)
            giveBack();
        return;
    }
    awake_.checkExpiry();
    if (awake_.isOn())
        renewLease();
    else
        turnOff();
}

void LidAwakeController::whenSettled(std::function<void()> action) {
    if (isSettled())
        action();
    else
        settledWaiters_.push_back(std::move(action));
}

const std::optional<AwakeFailure>& LidAwakeController::lastFailure() const {
    return unconfirmedReset_.get() ? unconfirmedReset_.get() : startFailure_.get();
}

std::optional<LidAwakeRefusal::Case> LidAwakeController::refusal() const {
    return hasAcknowledgedHeatWarning() ? std::nullopt : std::optional(LidAwakeRefusal::unacknowledged);
}

LidClosePrecaution::Case LidAwakeController::precaution() const {
    return LidClosePrecaution::shown(isOn(), hasAcknowledgedHeatWarning(), machineConditions());
}

bool LidAwakeController::start(std::optional<Seconds> seconds, Session session) {
    requireMainThread("LidAwakeController's start");
    if (!hasAcknowledgedHeatWarning())
        return false;
    if (seconds && !AwakeIntent::deadlineAfter(*seconds, dates_.now()))
        return false;
    const Signal::Batch batch(changed_);
    if (const auto prepared = blocker_.prepare(); !prepared) {
        failStart(AwakeFailure(prepared.error()));
        return false;
    }
    if (session == Session::joined)
        awake_.checkExpiry();
    if (session == Session::started || !awake_.isOn())
        awake_.turnOnFor(seconds);
    if (!awake_.isOn()) {
        failStart(awake_.lastFailure());
        return false;
    }
    renewLease();
    return isWanted();
}

// A reset in doubt matters more, and its retry clears it.
void LidAwakeController::failStart(const std::optional<AwakeFailure>& failure) {
    startFailure_.set(unconfirmedReset_.get() ? std::nullopt : failure);
}

void LidAwakeController::renewLease() {
    if (isRenewing_)
        return;
    isRenewing_ = true;
    if (!isOn())
        isTurningOn_.set(true);
    armDeadline();
    ++unanswered_;
    blocker_.renewUntil(LidSleepLease::expiryRenewedAt(dates_.now()),
                        lifetime_.guard([this, switchOffs = switchOffs_](const std::optional<Error>& error) {
                            renewed(error, switchOffs);
                        }));
}

void LidAwakeController::renewed(const std::optional<Error>& error, int switchOffs) {
    std::vector<std::function<void()>> settled;
    {
        const Signal::Batch batch(changed_);
        if (switchOffs != switchOffs_) {
            // Of a lease that was switched off meanwhile; its revoke follows or has gone already.
        } else if (error) {
            isRenewing_ = false;
            isTurningOn_.set(false);
            scheduler_.cancel();
            deadlineScheduler_.cancel();
            isOn_.set(false);
            startFailure_.set(AwakeFailure(*error));
            giveBack();
        } else {
            isRenewing_ = false;
            isTurningOn_.set(false);
            isOn_.set(true);
            startFailure_.set(std::nullopt);
            unconfirmedReset_.set(std::nullopt);
            scheduler_.scheduleAt(dates_.now() + LidSleepLease::renewalInterval,
                                  lifetime_.guard([this] { checkLease(); }));
        }
        settled = answered();
    }
    // The observers above may have ended this controller.
    for (const auto& action : settled)
        action();
}

void LidAwakeController::giveBack() {
    ++givingBack_;
    ++unanswered_;
    blocker_.revoke(lifetime_.guard([this](const std::optional<Error>& error) { gaveBack(error); }));
}

void LidAwakeController::gaveBack(const std::optional<Error>& error) {
    std::vector<std::function<void()>> settled;
    {
        const Signal::Batch batch(changed_);
        --givingBack_;
        if (error) {
            const AwakeFailure failure(*error);
            // The helper's own words replace an earlier reason; otherwise the first one stays.
            const bool isRefusal = std::holds_alternative<AwakeFailure::LidHelperRefused>(failure.value);
            if (isRefusal || !unconfirmedReset_.get())
                unconfirmedReset_.set(failure);
            startFailure_.set(std::nullopt);
        } else {
            unconfirmedReset_.set(std::nullopt);
        }
        settled = answered();
    }
    for (const auto& action : settled)
        action();
}

/// What to run now that one more request has been answered: nothing until all are.
std::vector<std::function<void()>> LidAwakeController::answered() {
    --unanswered_;
    return isSettled() ? std::exchange(settledWaiters_, {}) : std::vector<std::function<void()>>();
}

void LidAwakeController::armDeadline() {
    const auto end = awake_.isOn() ? awake_.endsAt() : dates_.now(); // without a session: at once
    if (end)
        deadlineScheduler_.scheduleAt(*end, lifetime_.guard([this] { deadlineReached(); }));
    else
        deadlineScheduler_.cancel();
}

void LidAwakeController::deadlineReached() {
    if (!isWanted())
        return;
    const Signal::Batch batch(changed_);
    awake_.checkExpiry();
    if (awake_.isOn())
        armDeadline();
    else
        turnOff();
}

void LidAwakeController::refreshConditions() {
    machineConditions_.set(machine_.snapshot());
}

} // namespace wakeloft
