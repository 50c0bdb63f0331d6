#pragma once

#include "Bus.h"
#include "lid/LidLeaseClientConnection.h"

#include <cstdint>
#include <functional>
#include <map>

namespace wakeloft {

/// One client of the helper: a connection of its own to the system bus, by whose unique name the helper knows
/// it. Waits for nothing, neither for the bus nor for the helper. Main thread, in a later turn for what the
/// bus tells.
class LidLeaseBusConnection final : public LidLeaseClientConnection {
  public:
    /// Is the computer to sleep when the lease ends with the lid shut? Asked at each renewal.
    using SuspendIfClosed = std::function<bool()>;
    using Trouble = std::function<void(const PlatformError&)>;

    /// The requirement of the process at the other end is its name on the bus, which the bus lets root alone
    /// own. `trouble` is told why a connection or a request failed. `event` must outlive the connections.
    static LidLeaseConnectionFactory factory(sd_event* event, SuspendIfClosed suspendIfClosed,
                                             Trouble trouble);

    /// What the helper says in an error, such as that polkit does not let this session in, is the reason of a
    /// refusal; an error of the bus is a failure.
    void renewLeaseUntil(double until, RenewalReply reply, Failed failed) override;
    void revokeLease(std::function<void()> reply, Failed failed) override;
    /// Leaves the bus at once.
    void invalidate() override;

  private:
    /// Without waiting for what is still to be sent, as a bus that hangs would have it.
    struct Leave {
        void operator()(sd_bus* bus) const { sd_bus_close_unref(bus); }
    };
    using Answered = std::function<void(sd_bus_message* answer)>;

    LidLeaseBusConnection(std::string name, SuspendIfClosed suspendIfClosed, Trouble trouble);
    int open(sd_event* event);
    int newCall(const char* method, BusMessage& call) const;
    void send(const BusMessage& call, int result, Answered answered, const Failed& failed);
    void fail(const PlatformError& error, const Failed& failed) const;

    std::string name_;
    SuspendIfClosed suspendIfClosed_;
    Trouble trouble_;
    std::unique_ptr<sd_bus, Leave> bus_; ///< none once invalidated
    std::uint64_t lastRequest_ = 0;
    std::map<std::uint64_t, BusSlot> pending_;
};

} // namespace wakeloft
