#include "lease/LidHelperLoop.h"

#include "lease/LidHelperService.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace wakeloft {

LidHelperLoop::LidHelperLoop(LidLeaseService& service, LidSleepLeaseKeeper& keeper, Surroundings surroundings)
    : service_(service), keeper_(keeper), surroundings_(std::move(surroundings)) {
    settle(); // the keeper's first write may have failed
}

LidHelperLoop::~LidHelperLoop() {
    surroundings_.timer.cancel();
}

LidLeaseRequests LidHelperLoop::requests(MainRunLoop& mainLoop) {
    const auto handled =
        lifetime_.guard([this](LidClient client, const LidLeaseRequest& request, const LidLeaseReply& reply) {
            if (isStopped_)
                return;
            const auto text = answer(request, client);
            settle(); // first: who hears of a lease may rely on all that comes with it
            reply(text);
        });
    return
        [&mainLoop, handled](LidClient client, const LidLeaseRequest& request, const LidLeaseReply& reply) {
            mainLoop.perform([=] { handled(client, request, reply); });
        };
}

std::optional<std::string> LidHelperLoop::answer(const LidLeaseRequest& request, LidClient client) {
    const auto* renewal = std::get_if<LidLeaseRequest::Renew>(&request.value);
    if (heldBackFor_ && renewal != nullptr && std::isfinite(renewal->until) &&
        !service_.yielded().contains(client))
        return heldBackFor_;
    return service_.handle(request, client);
}

void LidHelperLoop::check() {
    if (isStopped_)
        return;
    service_.checkLease();
    settle();
}

void LidHelperLoop::checkStanding() {
    if (isStopped_)
        return;
    service_.checkStanding();
    settle();
}

void LidHelperLoop::programFound(const LidHelperFileWatch::Finding& finding) {
    program_ = finding;
    stepAsideIfFree();
}

bool LidHelperLoop::stop() {
    isStopped_ = true;
    surroundings_.timer.cancel();
    const Seconds end = surroundings_.uptime.uptime() + LidHelperService::stopRetryWindow;
    const bool isPutBack =
        keeper_.revokeBeforeExit([&] { return surroundings_.uptime.uptime() >= end; },
                                 [&] { surroundings_.pause(LidHelperService::stopRetryPause); });
    logTrouble();
    return isPutBack;
}

void LidHelperLoop::settle() {
    arm();
    logTrouble();
    if (surroundings_.settled)
        surroundings_.settled();
    stepAsideIfFree();
}

// Once for each new trouble, however often the write is tried again.
void LidHelperLoop::logTrouble() {
    std::optional<std::string> trouble;
    if (const auto& error = keeper_.lastError()) {
        const bool isHeld = keeper_.leaseExpiry().has_value();
        trouble = (isHeld ? LidHelperRefusal::settingUnwritten(error->description)
                          : LidHelperRefusal::settingNotPutBack(error->description))
                      .reason();
    }
    if (trouble == loggedTrouble_)
        return;
    surroundings_.log(trouble ? *trouble : "The sleep setting is as wanted again.");
    loggedTrouble_ = std::move(trouble);
}

void LidHelperLoop::stepAsideIfFree() {
    const bool isLeaseHeld = !service_.terms().empty();
    const bool isResetInDoubt = keeper_.isSleepDisabled() || keeper_.lastError();
    if (isStopped_ || !LidHelperFileWatch::stepsAside(program_, isLeaseHeld, isResetInDoubt))
        return;
    program_ = LidHelperFileWatch::Finding::running(); // asked once
    surroundings_.log("The helper's program was replaced: this one ends.");
    surroundings_.end();
}

void LidHelperLoop::arm() {
    // An end that is reached, or almost, is looked at in a moment: a clock that stands still must not spin.
    constexpr Seconds shortest = 0.01;
    if (const auto wait = untilNextCheck())
        surroundings_.timer.arm(std::max(*wait, shortest), lifetime_.guard([this] { check(); }));
    else
        surroundings_.timer.cancel();
}

std::optional<Seconds> LidHelperLoop::untilNextCheck() const {
    std::optional<Seconds> soonest;
    const auto consider = [&](Seconds wait) { soonest = soonest ? std::min(*soonest, wait) : wait; };
    const Date now = surroundings_.dates.now();
    const Seconds uptime = surroundings_.uptime.uptime();
    for (const auto& [client, term] : service_.terms())
        consider(std::min(term.expiry - now, term.uptimeExpiry - uptime));
    if (const auto retryAt = keeper_.retryAt())
        consider(*retryAt - uptime);
    return soonest;
}

} // namespace wakeloft
