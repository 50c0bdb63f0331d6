#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace wakeloft {

/// A live connection to the helper, as its client sees it. Asked on the main thread; its callbacks may come
/// on any thread, also before the call returns, late, twice or never.
class LidLeaseClientConnection {
  public:
    /// No text: the lease is granted or extended; else the reason of a refusal.
    using RenewalReply = std::function<void(std::optional<std::string>)>;
    /// The connection broke, or what is at its other end is not the helper.
    using Failed = std::function<void()>;

    virtual ~LidLeaseClientConnection() = default;

    /// The lease is to end at `until`, in seconds since 1970.
    virtual void renewLeaseUntil(double until, RenewalReply reply, Failed failed) = 0;
    virtual void revokeLease(std::function<void()> reply, Failed failed) = 0;
    /// Ends the connection, and with it what the helper holds for it. Nothing is asked of it afterwards.
    virtual void invalidate() = 0;
};

/// Makes a connection that talks only to a process that meets `helperRequirement`; nothing where none can be
/// made. Whether somebody answers is told by the requests.
using LidLeaseConnectionFactory =
    std::function<std::unique_ptr<LidLeaseClientConnection>(const std::string& helperRequirement)>;

} // namespace wakeloft
