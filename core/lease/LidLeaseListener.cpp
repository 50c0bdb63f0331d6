#include "lease/LidLeaseListener.h"

#include <cstdio>
#include <cstdlib>
#include <limits>
#include <utility>

namespace wakeloft {

void LidLeaseConnection::renewLeaseUntil(double until, LidLeaseReply reply) const {
    requests_(client_, LidLeaseRequest::renew(until), std::move(reply));
}

void LidLeaseConnection::revokeLease(std::function<void()> reply) const {
    requests_(client_, LidLeaseRequest::revoke(),
              [reply = std::move(reply)](const std::optional<std::string>&) { reply(); });
}

void LidLeaseConnection::invalidated() const {
    requests_(client_, LidLeaseRequest::disconnect(), [](const std::optional<std::string>&) {});
}

LidLeaseListener::LidLeaseListener(std::optional<std::string> callerRequirement, LidLeaseRequests requests)
    : callerRequirement_(std::move(callerRequirement)), requests_(std::move(requests)) {}

std::unique_ptr<LidLeaseConnection> LidLeaseListener::accept() {
    if (!callerRequirement_)
        return nullptr;
    const std::lock_guard guard(lock_);
    if (lastClient_ == std::numeric_limits<LidClient>::max()) {
        std::fputs("WakeloftLidHelper: the clients' numbers have run out.\n", stderr);
        std::abort();
    }
    return std::make_unique<LidLeaseConnection>(++lastClient_, requests_);
}

} // namespace wakeloft
