#include "lease/LidLeaseService.h"

#include "support/MainThread.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace wakeloft {

namespace {

template <class... Handlers>
struct Overloaded : Handlers... {
    using Handlers::operator()...;
};

} // namespace

LidLeaseService::LidLeaseService(LidSleepLeaseKeeper& keeper, std::function<void(const std::string&)> log)
    : keeper_(keeper), log_(std::move(log)) {}

std::optional<std::string> LidLeaseService::renewUntil(double deadline, LidClient client) {
    if (!std::isfinite(deadline))
        return LidHelperRefusal::deadlineNotANumber().reason();
    const auto term = keeper_.termUntil(Date{deadline});
    if (!term)
        return revokeFrom(client);
    if (yielded_.erase(client) > 0)
        return yieldedReason();

    using Standing = SleepSettingStanding;
    auto refused = std::visit(
        Overloaded{[](const Standing::AsWritten&) -> std::optional<std::string> { return std::nullopt; },
                   [this](const Standing::OnElsewhere&) -> std::optional<std::string> {
                       log_("lease refused: disablesleep is already 1 and this helper did not write it; left "
                            "as it is");
                       return alreadyOnReason();
                   },
                   [this, client](const Standing::OffElsewhere&) -> std::optional<std::string> {
                       yielded_ = holders();
                       yielded_.erase(client);
                       endAllTerms();
                       return yieldedReason();
                   },
                   [this](const Standing::Unread& unread) -> std::optional<std::string> {
                       log_("lease refused: disablesleep could not be read, so it was not written: " +
                            unread.detail);
                       return LidHelperRefusal::settingUnreadable(unread.detail).reason();
                   }},
        keeper_.readStanding().value);
    if (refused)
        return refused;

    terms_.insert_or_assign(client, *term);
    checkLease();
    if (keeper_.lastError())
        return LidHelperRefusal::settingUnwritten(keeper_.lastError()->description).reason();
    return std::nullopt;
}

std::optional<std::string> LidLeaseService::revokeFrom(LidClient client) {
    terms_.erase(client);
    yielded_.erase(client);
    checkLease();
    if (terms_.empty() && keeper_.lastError())
        return LidHelperRefusal::settingNotPutBack(keeper_.lastError()->description).reason();
    return std::nullopt;
}

std::optional<std::string> LidLeaseService::handle(const LidLeaseRequest& request, LidClient client) {
    requireMainThread("LidLeaseService::handle");
    if (const auto* renewal = std::get_if<LidLeaseRequest::Renew>(&request.value))
        return renewUntil(renewal->until, client);
    return revokeFrom(client);
}

void LidLeaseService::checkLease() {
    std::erase_if(terms_, [this](const auto& entry) { return keeper_.hasLapsed(entry.second); });
    if (terms_.empty()) {
        keeper_.revoke();
        return;
    }
    // Each end by itself: they may be different clients'.
    LidLeaseTerm latest = terms_.begin()->second;
    for (const auto& [client, term] : terms_) {
        latest.expiry = std::max(latest.expiry, term.expiry);
        latest.uptimeExpiry = std::max(latest.uptimeExpiry, term.uptimeExpiry);
    }
    keeper_.hold(latest);
}

void LidLeaseService::checkStanding() {
    if (terms_.empty() ||
        !std::holds_alternative<SleepSettingStanding::OffElsewhere>(keeper_.readStanding().value))
        return;
    yielded_.merge(holders());
    endAllTerms();
}

void LidLeaseService::endAllTerms() {
    terms_.clear();
    log_("lease ended: disablesleep was set to 0 by something else; left at 0");
}

LidLeaseRequests LidLeaseService::requests(MainRunLoop& loop) {
    const auto handled =
        lifetime_.guard([this](LidClient client, const LidLeaseRequest& request, const LidLeaseReply& reply) {
            reply(handle(request, client));
        });
    return [&loop, handled](LidClient client, const LidLeaseRequest& request, const LidLeaseReply& reply) {
        loop.perform([=] { handled(client, request, reply); });
    };
}

std::set<LidClient> LidLeaseService::holders() const {
    std::set<LidClient> clients;
    for (const auto& [client, term] : terms_)
        clients.insert(client);
    return clients;
}

} // namespace wakeloft
