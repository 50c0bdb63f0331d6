#pragma once

#include "lease/LidSleepLease.h"
#include "lease/XPCReply.h"
#include "lid/LidHelperRegistration.h"
#include "lid/LidLeaseClientConnection.h"
#include "lid/LidSleepBlocker.h"
#include "support/Lifetime.h"

#include <deque>

namespace wakeloft {

/// The real client of the helper: one request at a time, each with a time limit, over a connection that is
/// made when it is first needed and made anew after it failed.
class XPCLidSleepBlocker final : public LidSleepBlocker {
  public:
    /// Reaches nobody without `helperRequirement`: what the process at the other end must meet.
    /// `registration` and `loop` must outlive the blocker, `loop` its connection's callbacks too.
    XPCLidSleepBlocker(LidHelperRegistration& registration, std::optional<std::string> helperRequirement,
                       Seconds replyTimeout, LidLeaseConnectionFactory makeConnection, MainRunLoop& loop);
    XPCLidSleepBlocker(const XPCLidSleepBlocker&) = delete;
    XPCLidSleepBlocker& operator=(const XPCLidSleepBlocker&) = delete;
    ~XPCLidSleepBlocker() override;

    /// Registers the helper where it is not. Reports a helper that waits for the user's approval as that,
    /// whatever registering said.
    std::expected<void, Error> prepare() override;
    void renewUntil(Date date, Completion completion) override;
    void revoke(Completion completion) override;
    [[nodiscard]] bool isEngaged() const override { return isEngaged_; }

    /// The helper may still hold the sleep setting for this app: a request that would have told was not
    /// answered, or a revoke was refused. Until a later request is confirmed, a revoke is always sent.
    [[nodiscard]] bool isResetUnconfirmed() const { return isResetUnconfirmed_; }

  private:
    using Outcome = XPCReply::Outcome;
    using Done = std::function<void()>;
    using Ask = std::function<void(Done)>; ///< calls what it is given when it has its outcome
    using Request = std::function<void(LidLeaseClientConnection&, const std::shared_ptr<XPCReply>&)>;
    using Handler = std::function<void(const Outcome&, bool wasAnswering)>;

    void ask(Ask ask);
    void askNext();
    void send(const Request& request, Handler handler);
    void dropConnection();
    std::optional<Error> renewal(const Outcome& outcome, bool wasAnswering);
    std::optional<Error> giveBack(const Outcome& outcome);

    bool isEngaged_ = false;
    bool isResetUnconfirmed_ = false;
    LidHelperRegistration& registration_;
    std::optional<std::string> helperRequirement_;
    Seconds replyTimeout_;
    LidLeaseConnectionFactory makeConnection_;
    MainRunLoop& loop_;
    std::unique_ptr<LidLeaseClientConnection> connection_;
    std::deque<Ask> waiting_;
    bool isAsking_ = false;
    Lifetime lifetime_;
};

} // namespace wakeloft
