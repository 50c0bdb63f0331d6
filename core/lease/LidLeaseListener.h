#pragma once

#include "lease/LidLeaseService.h"

#include <memory>
#include <mutex>
#include <string>

namespace wakeloft {

/// One client's connection as its transport sees it: every request carries the client's number. Any thread.
class LidLeaseConnection {
  public:
    LidLeaseConnection(LidClient client, LidLeaseRequests requests)
        : client_(client), requests_(std::move(requests)) {}

    /// `reply` gets no text for a lease that is granted or extended.
    void renewLeaseUntil(double until, LidLeaseReply reply) const;
    /// Answers in every case and says nothing: trouble is told at the next renewal.
    void revokeLease(std::function<void()> reply) const;
    /// The client is gone.
    void invalidated() const;

    [[nodiscard]] LidClient client() const { return client_; }

  private:
    LidClient client_;
    LidLeaseRequests requests_;
};

/// Numbers the connections that it accepts, from 1 and never one twice. Any thread.
class LidLeaseListener {
  public:
    /// Accepts nobody without `callerRequirement`: what a transport demands of its peers.
    LidLeaseListener(std::optional<std::string> callerRequirement, LidLeaseRequests requests);

    /// Nothing where the connection is refused.
    std::unique_ptr<LidLeaseConnection> accept();
    [[nodiscard]] const std::optional<std::string>& callerRequirement() const { return callerRequirement_; }

  private:
    std::optional<std::string> callerRequirement_;
    LidLeaseRequests requests_;
    std::mutex lock_;
    LidClient lastClient_ = 0; ///< under `lock_`
};

} // namespace wakeloft
