#include "lid/XPCLidSleepBlocker.h"

#include "support/MainThread.h"

#include <utility>

namespace wakeloft {

XPCLidSleepBlocker::XPCLidSleepBlocker(LidHelperRegistration& registration,
                                       std::optional<std::string> helperRequirement, Seconds replyTimeout,
                                       LidLeaseConnectionFactory makeConnection, MainRunLoop& loop)
    : registration_(registration),
      helperRequirement_(std::move(helperRequirement)),
      replyTimeout_(replyTimeout),
      makeConnection_(std::move(makeConnection)),
      loop_(loop) {}

XPCLidSleepBlocker::~XPCLidSleepBlocker() {
    dropConnection();
}

std::expected<void, Error> XPCLidSleepBlocker::prepare() {
    const auto requiresApproval = std::unexpected(Error(LidSleepBlockerError::helperRequiresApproval()));
    if (!helperRequirement_)
        return std::unexpected(LidSleepBlockerError::helperUnavailable());
    const auto status = registration_.status();
    if (status == LidHelperStatus::enabled)
        return {};
    if (status == LidHelperStatus::requiresApproval)
        return requiresApproval;
    auto registered = registration_.registerHelper();
    if (registration_.status() == LidHelperStatus::requiresApproval)
        return requiresApproval;
    return registered;
}

void XPCLidSleepBlocker::renewUntil(Date date, Completion completion) {
    ask([this, date, completion = std::move(completion)](const Done& done) {
        send(
            [date](LidLeaseClientConnection& connection, const std::shared_ptr<XPCReply>& reply) {
                connection.renewLeaseUntil(
                    date.secondsSince1970,
                    [reply](std::optional<std::string> text) {
                        reply->finish(Outcome::replied(std::move(text)));
                    },
                    [reply] { reply->finish(Outcome::failed()); });
            },
            [this, completion, done](const Outcome& outcome, bool wasAnswering) {
                completion(renewal(outcome, wasAnswering));
                done();
            });
    });
}

void XPCLidSleepBlocker::revoke(Completion completion) {
    ask([this, completion = std::move(completion)](const Done& done) {
        isEngaged_ = false;
        if (!connection_ && !isResetUnconfirmed_) {
            completion(std::nullopt); // the helper holds nothing for us
            done();
            return;
        }
        send(
            [](LidLeaseClientConnection& connection, const std::shared_ptr<XPCReply>& reply) {
                connection.revokeLease([reply] { reply->finish(Outcome::replied(std::nullopt)); },
                                       [reply] { reply->finish(Outcome::failed()); });
            },
            [this, completion, done](const Outcome& outcome, bool) {
                completion(giveBack(outcome));
                done();
            });
    });
}

void XPCLidSleepBlocker::ask(Ask ask) {
    requireMainThread("a request to the lid helper");
    waiting_.push_back(std::move(ask));
    askNext();
}

void XPCLidSleepBlocker::askNext() {
    if (isAsking_ || waiting_.empty())
        return;
    isAsking_ = true;
    const auto next = std::move(waiting_.front());
    waiting_.pop_front();
    // Guarded: a completion may end the blocker.
    next(lifetime_.guard([this] {
        isAsking_ = false;
        askNext();
    }));
}

void XPCLidSleepBlocker::send(const Request& request, Handler handler) {
    if (!helperRequirement_) {
        handler(Outcome::failed(), false);
        return;
    }
    const bool wasAnswering = connection_ != nullptr;
    if (!connection_)
        connection_ = makeConnection_(*helperRequirement_);
    const auto reply = XPCReply::make(
        loop_, lifetime_.guard([this, wasAnswering, handler = std::move(handler)](const Outcome& outcome) {
            const bool isUnanswered = std::holds_alternative<Outcome::Unanswered>(outcome.value);
            // A connection that had been answering may only be slow: it is kept.
            if (outcome == Outcome::failed() || (isUnanswered && !wasAnswering))
                dropConnection();
            handler(outcome, wasAnswering);
        }));
    if (!connection_) {
        reply->finish(Outcome::failed());
        return;
    }
    request(*connection_, reply);
    reply->expireAfter(replyTimeout_);
}

void XPCLidSleepBlocker::dropConnection() {
    if (const auto connection = std::move(connection_))
        connection->invalidate();
}

std::optional<Error> XPCLidSleepBlocker::renewal(const Outcome& outcome, bool wasAnswering) {
    const auto* replied = std::get_if<Outcome::Replied>(&outcome.value);
    isEngaged_ = replied && !replied->text;
    if (isEngaged_) {
        isResetUnconfirmed_ = false;
        return std::nullopt;
    }
    if (replied)
        return LidSleepBlockerError::helperRefused(*replied->text);
    if (outcome == Outcome::unanswered() && wasAnswering)
        isResetUnconfirmed_ = true; // it may have been granted
    if (registration_.status() == LidHelperStatus::requiresApproval)
        return LidSleepBlockerError::helperRequiresApproval();
    return LidSleepBlockerError::helperUnavailable();
}

std::optional<Error> XPCLidSleepBlocker::giveBack(const Outcome& outcome) {
    if (const auto* replied = std::get_if<Outcome::Replied>(&outcome.value)) {
        isResetUnconfirmed_ = replied->text.has_value();
        if (replied->text)
            return LidSleepBlockerError::helperRefused(*replied->text);
        return std::nullopt;
    }
    if (outcome == Outcome::unanswered())
        isResetUnconfirmed_ = true;
    // A helper that cannot be reached at all holds nothing that was not in doubt before.
    if (isResetUnconfirmed_)
        return LidSleepBlockerError::helperUnavailable();
    return std::nullopt;
}

} // namespace wakeloft
