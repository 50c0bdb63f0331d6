#pragma once

#include "lease/LidHelperRefusal.h"
#include "lease/LidLeaseRequest.h"
#include "lease/LidSleepLeaseKeeper.h"
#include "support/Lifetime.h"
#include "support/MainRunLoop.h"

#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <set>
#include <string>

namespace wakeloft {

/// The number that the listener gave a client; never reused while the helper runs.
using LidClient = std::uint64_t;

/// Where a connection hands in its requests, from any thread; the reply (no text: granted) comes on the main
/// thread.
using LidLeaseReply = std::function<void(std::optional<std::string>)>;
using LidLeaseRequests = std::function<void(LidClient, LidLeaseRequest, LidLeaseReply)>;

/// Keeps one term a client, merges them into the keeper's one lease and words the answers. Main thread.
class LidLeaseService {
  public:
    /// The two fixed texts of a setting that something else changed.
    static std::string alreadyOnReason() { return LidHelperRefusal::settingOnElsewhere().reason(); }
    static std::string yieldedReason() { return LidHelperRefusal::settingTurnedOffElsewhere().reason(); }

    /// `keeper` must outlive the service; `log` takes one line.
    LidLeaseService(LidSleepLeaseKeeper& keeper, std::function<void(const std::string&)> log);
    LidLeaseService(const LidLeaseService&) = delete;
    LidLeaseService& operator=(const LidLeaseService&) = delete;
    ~LidLeaseService() = default;

    /// Nothing where the lease is granted or ended as asked, else the refusal's text.
    std::optional<std::string> renewUntil(double deadline, LidClient client);
    std::optional<std::string> revokeFrom(LidClient client);
    std::optional<std::string> handle(const LidLeaseRequest& request, LidClient client);

    /// Drops lapsed terms, and holds or puts back the setting accordingly.
    void checkLease();
    /// Looks whether something else turned the setting off; if so every holder's term ends, and each is told
    /// once, at its next renewal.
    void checkStanding();

    /// For the connections: queues each request to the main thread. Harmless once the service has ended;
    /// `loop` must outlive the connections.
    LidLeaseRequests requests(MainRunLoop& loop);

    [[nodiscard]] std::set<LidClient> holders() const;
    [[nodiscard]] const std::map<LidClient, LidLeaseTerm>& terms() const { return terms_; }
    /// The clients that are still to be told that something else turned the setting off.
    [[nodiscard]] const std::set<LidClient>& yielded() const { return yielded_; }

  private:
    void endAllTerms();

    std::map<LidClient, LidLeaseTerm> terms_;
    LidSleepLeaseKeeper& keeper_;
    std::function<void(const std::string&)> log_;
    std::set<LidClient> yielded_; ///< held a term when something else turned the setting off; not told yet
    Lifetime lifetime_;
};

} // namespace wakeloft
