#pragma once

#include "BusConnection.h"
#include "RequestAllowance.h"
#include "lease/LidLeaseListener.h"

#include <chrono>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace wakeloft {

/// The lease protocol on the system bus, at /com/wakeloft/app/lidhelper as com.wakeloft.app.LidLease:
/// `RenewLease(d deadline, a{sv} options) -> (s reason)`, where no reason is a grant, and `RevokeLease()`.
/// The option `suspend_if_closed` (b) asks for sleep when the lease ends with the lid shut.
/// A client is a connection to the bus, by its unique name; its leaving the bus is the disconnect. Main
/// thread.
class LidLeaseBusService {
  public:
    static constexpr std::size_t mostClients = 64;
    static constexpr std::size_t mostClientsOfUser = 16;
    static constexpr std::size_t mostWaitingRequests = 8; ///< of one client, until it is known to be allowed
    static constexpr std::size_t mostOptionBytes = 4096;
    /// A client that was not admitted gets the same answer for so long, without anybody being asked again.
    static constexpr std::chrono::milliseconds refusalTime{1000};
    static constexpr std::size_t mostRefusals = 64; ///< that are remembered

    /// Asked when a client first appears, by its unique name; `decided` gets the reason of a refusal, or
    /// nothing.
    using Decided = std::function<void(std::optional<std::string> refusal)>;
    using Authorize = std::function<void(const std::string& uniqueName, Decided decided)>;

    /// Requests come over `clientBus`, which serves nothing else and is read when there is nothing else to
    /// do: however many there are, nothing that the helper itself waits for stands behind them. The clients
    /// are asked after over `systemBus`. Both and `listener` must outlive the service; `log` takes one line.
    LidLeaseBusService(sd_bus* clientBus, BusConnection& systemBus, LidLeaseListener& listener,
                       Authorize authorize, std::function<void(const std::string&)> log);
    LidLeaseBusService(const LidLeaseBusService&) = delete;
    LidLeaseBusService& operator=(const LidLeaseBusService&) = delete;
    ~LidLeaseBusService();

    /// Puts the object on the bus and takes the name: calls come in from then on, as the loop runs.
    std::expected<void, PlatformError> publish();

    /// Does one of the holders want the computer to sleep when the lease ends with the lid shut?
    [[nodiscard]] bool wantsSuspend(const std::map<LidClient, LidLeaseTerm>& terms) const;

  private:
    /// One call that waits for its answer.
    struct Request {
        std::shared_ptr<sd_bus_message> call;
        std::optional<double> deadline; ///< nothing: a revocation
        bool suspendIfClosed = false;
    };
    struct Client {
        std::uint32_t user = 0;
        std::unique_ptr<LidLeaseConnection> connection;
        BusSlot leaving;
        RequestAllowance renewals;
        bool isAllowed = false;
        bool isGone = false;  ///< before it was known to be allowed: it has its place until then
        bool mayHold = false; ///< a renewal was handed on since the last revocation
        bool wantsSuspend = false;
        std::vector<Request> waiting;
    };
    struct Refusal {
        const char* error; ///< its name
        std::string reason;
        RequestAllowance::Clock::time_point end;
    };
    static const sd_bus_vtable vtable[];
    static int renewLease(sd_bus_message* call, void* userdata, sd_bus_error* error);
    static int revokeLease(sd_bus_message* call, void* userdata, sd_bus_error* error);

    int take(Request request, sd_bus_error* error);
    int askAfter(const std::string& name, Request request, sd_bus_error* error);
    int admit(const std::string& name, sd_bus_error* error);
    int refuse(const std::string& name, const char* errorName, const std::string& reason,
               sd_bus_error* error);
    const Refusal* refusalOf(const std::string& name);
    void decided(const std::string& name, const std::optional<std::string>& refusal);
    void hand(Client& client, const Request& request);
    void left(const std::string& name);

    sd_bus* clientBus_;
    BusConnection& systemBus_;
    LidLeaseListener& listener_;
    Authorize authorize_;
    std::function<void(const std::string&)> log_;
    std::map<std::string, Client> clients_;   ///< by unique name
    std::map<std::string, Refusal> refusals_; ///< by unique name
    BusSlot object_;
    Lifetime lifetime_;
};

} // namespace wakeloft
