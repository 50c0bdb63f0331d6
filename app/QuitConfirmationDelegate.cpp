#include "QuitConfirmationDelegate.h"

#include "support/MainThread.h"

#include <utility>

namespace wakeloft {

QuitConfirmationDelegate::QuitConfirmationDelegate(Shell shell) : shell_(std::move(shell)) {}

void QuitConfirmationDelegate::attach(AwakeController& awake, LidAwakeController& lid) {
    if (awake_ != nullptr)
        return;
    awake_ = &awake;
    lid_ = &lid;
}

TerminateReply QuitConfirmationDelegate::applicationShouldTerminate() {
    requireMainThread("QuitConfirmationDelegate::applicationShouldTerminate");
    if (shell_.isSystemQuit() || isRelaunchingForUpdate_)
        return quitForTheSystem();
    if (isAsking_ || isWaitingForHelper_)
        return TerminateReply::cancel; // the request before this one goes on
    return quitAfterAsking();
}

TerminateReply QuitConfirmationDelegate::quitForTheSystem() {
    // The system insists: it does not wait a second time.
    if (std::exchange(isWaitingForHelper_, false))
        return TerminateReply::now;
    return endDeepwakeAndQuit();
}

TerminateReply QuitConfirmationDelegate::quitAfterAsking() {
    // A session that has just run out is not worth a question.
    if (awake_ != nullptr)
        awake_->checkExpiry();
    if (lid_ != nullptr)
        lid_->checkLease();
    if (awake_ == nullptr)
        return quitOnceTheHelperHasAnswered();
    const auto confirmation =
        QuitConfirmation::asked(awake_->isOn(), lid_ != nullptr && lid_->isOn(), awake_->remaining());
    if (std::holds_alternative<QuitConfirmation::QuitNow>(confirmation.value))
        return quitOnceTheHelperHasAnswered();
    isAsking_ = true;
    const auto reply = shell_.ask(confirmation) ? endDeepwakeAndQuit() : TerminateReply::cancel;
    isAsking_ = false;
    return reply;
}

TerminateReply QuitConfirmationDelegate::endDeepwakeAndQuit() {
    if (lid_ != nullptr)
        lid_->turnOff();
    return quitOnceTheHelperHasAnswered();
}

TerminateReply QuitConfirmationDelegate::quitOnceTheHelperHasAnswered() {
    if (lid_ == nullptr || lid_->isSettled())
        return TerminateReply::now;
    isWaitingForHelper_ = true;
    const auto answered = lifetime_.guard([this] { helperHasAnswered(); });
    lid_->whenSettled(answered);
    shell_.after(longestWait, answered);
    return TerminateReply::later;
}

void QuitConfirmationDelegate::helperHasAnswered() {
    if (std::exchange(isWaitingForHelper_, false))
        shell_.reply(true);
}

void QuitConfirmationDelegate::relaunchForUpdate() {
    requireMainThread("QuitConfirmationDelegate::relaunchForUpdate");
    isRelaunchingForUpdate_ = true;
}

std::function<void()> QuitConfirmationDelegate::relaunchNotice() {
    return lifetime_.guard([this] { relaunchForUpdate(); });
}

} // namespace wakeloft
