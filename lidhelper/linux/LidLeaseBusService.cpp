#include "LidLeaseBusService.h"

#include "LeaseOptions.h"
#include "LidLeaseBus.h"
#include "lease/LidHelperService.h"

#include <algorithm>
#include <cerrno>
#include <utility>

namespace wakeloft {

namespace {

struct CredentialsDeleter {
    void operator()(sd_bus_creds* credentials) const { sd_bus_creds_unref(credentials); }
};

/// The kernel's word for it, kept by the bus.
int readUser(sd_bus* bus, const std::string& name, std::uint32_t& user) {
    sd_bus_creds* credentials = nullptr;
    const int result = sd_bus_get_name_creds(bus, name.c_str(), SD_BUS_CREDS_EUID, &credentials);
    const std::unique_ptr<sd_bus_creds, CredentialsDeleter> owned(credentials);
    return result < 0 ? result : sd_bus_creds_get_euid(credentials, &user);
}

int setPriority(sd_bus* bus, int priority) {
    sd_event* event = sd_bus_get_event(bus);
    const int result = sd_bus_detach_event(bus);
    return result < 0 ? result : sd_bus_attach_event(bus, event, priority);
}

std::shared_ptr<sd_bus_message> kept(sd_bus_message* message) {
    return {sd_bus_message_ref(message), [](sd_bus_message* each) { sd_bus_message_unref(each); }};
}

} // namespace

const sd_bus_vtable LidLeaseBusService::vtable[] = {
    SD_BUS_VTABLE_START(0),
    SD_BUS_METHOD_WITH_NAMES("RenewLease", "da{sv}", SD_BUS_PARAM(deadline) SD_BUS_PARAM(options), "s",
                             SD_BUS_PARAM(reason), renewLease, SD_BUS_VTABLE_UNPRIVILEGED),
    SD_BUS_METHOD("RevokeLease", "", "", revokeLease, SD_BUS_VTABLE_UNPRIVILEGED),
    SD_BUS_VTABLE_END,
};

LidLeaseBusService::LidLeaseBusService(sd_bus* clientBus, BusConnection& systemBus,
                                       LidLeaseListener& listener, Authorize authorize,
                                       std::function<void(const std::string&)> log)
    : clientBus_(clientBus),
      systemBus_(systemBus),
      listener_(listener),
      authorize_(std::move(authorize)),
      log_(std::move(log)) {}

LidLeaseBusService::~LidLeaseBusService() = default;

std::expected<void, PlatformError> LidLeaseBusService::publish() {
    sd_bus_slot* slot = nullptr;
    int result =
        sd_bus_add_object_vtable(clientBus_, &slot, LidLeaseBus::path, LidLeaseBus::interface, vtable, this);
    object_.reset(slot);
    if (result >= 0)
        result = setPriority(clientBus_, SD_EVENT_PRIORITY_IDLE);
    if (result >= 0)
        result = sd_bus_request_name(clientBus_, LidHelperService::label, 0);
    if (result < 0)
        return std::unexpected(
            busFailure(std::string("The name ") + LidHelperService::label + " cannot be taken", result));
    return {};
}

bool LidLeaseBusService::wantsSuspend(const std::map<LidClient, LidLeaseTerm>& terms) const {
    return std::ranges::any_of(clients_, [&](const auto& entry) {
        const Client& client = entry.second;
        return client.wantsSuspend && terms.contains(client.connection->client());
    });
}

int LidLeaseBusService::renewLease(sd_bus_message* call, void* userdata, sd_bus_error* error) {
    double deadline = 0;
    LeaseOptions options;
    int result = sd_bus_message_read(call, "d", &deadline);
    if (result >= 0)
        result = LeaseOptions::read(call, mostOptionBytes, options, error);
    if (result < 0)
        return result;
    return static_cast<LidLeaseBusService*>(userdata)->take({kept(call), deadline, options.suspendIfClosed},
                                                            error);
}

int LidLeaseBusService::revokeLease(sd_bus_message* call, void* userdata, sd_bus_error* error) {
    auto& self = *static_cast<LidLeaseBusService*>(userdata);
    const auto client = self.clients_.find(sd_bus_message_get_sender(call));
    if (client == self.clients_.end() || (client->second.isAllowed && !client->second.mayHold))
        return sd_bus_reply_method_return(call, nullptr); // it has no lease
    return self.take({kept(call), std::nullopt, false}, error);
}

int LidLeaseBusService::take(Request request, sd_bus_error* error) {
    const std::string name = sd_bus_message_get_sender(request.call.get());
    const auto found = clients_.find(name);
    if (found == clients_.end())
        return askAfter(name, std::move(request), error);
    Client& client = found->second;
    if (client.isGone)
        return sd_bus_error_set(error, SD_BUS_ERROR_NAME_HAS_NO_OWNER, "The client has left the bus.");
    // What a lease is ended with is never refused: there are no more of them than of renewals.
    if (request.deadline && !client.renewals.take(RequestAllowance::Clock::now()))
        return sd_bus_error_set(error, SD_BUS_ERROR_LIMITS_EXCEEDED, "Too many requests.");
    if (client.isAllowed) {
        hand(client, request);
        return 1;
    }
    if (client.waiting.size() >= mostWaitingRequests)
        return sd_bus_error_set(error, SD_BUS_ERROR_LIMITS_EXCEEDED, "Too many requests are waiting.");
    client.waiting.push_back(std::move(request));
    return 1;
}

int LidLeaseBusService::askAfter(const std::string& name, Request request, sd_bus_error* error) {
    if (const auto* refusal = refusalOf(name))
        return sd_bus_error_set(error, refusal->error, refusal->reason.c_str());
    if (const int result = admit(name, error); result < 0)
        return result;
    clients_.at(name).waiting.push_back(std::move(request));
    authorize_(name, lifetime_.guard([this, name](const std::optional<std::string>& refusal) {
        decided(name, refusal);
    }));
    return 1;
}

int LidLeaseBusService::admit(const std::string& name, sd_bus_error* error) {
    Client client;
    const auto bus = systemBus_.bus();
    auto leaving = !bus ? std::unexpected(bus.error())
                        : watchBusName(*bus, name.c_str(), [this, name](const std::string& owner) {
                              if (owner.empty())
                                  left(name);
                          });
    // The watch is in place before the bus answers this, so that a client that is gone fails here. It may
    // have left many more requests behind.
    if (!leaving || readUser(*bus, name, client.user) < 0)
        return refuse(name, SD_BUS_ERROR_ACCESS_DENIED, "The bus does not know whose request this is.",
                      error);
    const auto ofUser =
        std::ranges::count_if(clients_, [&](const auto& entry) { return entry.second.user == client.user; });
    if (clients_.size() >= mostClients || static_cast<std::size_t>(ofUser) >= mostClientsOfUser)
        return refuse(name, SD_BUS_ERROR_LIMITS_EXCEEDED,
                      "Too many programs keep the computer awake with the lid closed.", error);
    client.leaving = std::move(*leaving);
    client.connection = listener_.accept();
    if (client.connection == nullptr)
        return refuse(name, SD_BUS_ERROR_ACCESS_DENIED, "The helper accepts nobody.", error);
    clients_.emplace(name, std::move(client));
    return 0;
}

int LidLeaseBusService::refuse(const std::string& name, const char* errorName, const std::string& reason,
                               sd_bus_error* error) {
    if (refusals_.size() >= mostRefusals)
        refusals_.erase(
            std::ranges::min_element(refusals_, {}, [](const auto& entry) { return entry.second.end; }));
    refusals_.insert_or_assign(name,
                               Refusal{errorName, reason, RequestAllowance::Clock::now() + refusalTime});
    return sd_bus_error_set(error, errorName, reason.c_str());
}

const LidLeaseBusService::Refusal* LidLeaseBusService::refusalOf(const std::string& name) {
    const auto refusal = refusals_.find(name);
    if (refusal == refusals_.end())
        return nullptr;
    if (RequestAllowance::Clock::now() < refusal->second.end)
        return &refusal->second;
    refusals_.erase(refusal); // a new beginning: its session may have become active
    return nullptr;
}

void LidLeaseBusService::decided(const std::string& name, const std::optional<std::string>& refusal) {
    const auto client = clients_.find(name);
    if (client == clients_.end())
        return;
    if (client->second.isGone) {
        clients_.erase(client);
        return;
    }
    const auto waiting = std::exchange(client->second.waiting, {});
    if (!refusal) {
        client->second.isAllowed = true;
        for (const auto& request : waiting)
            hand(client->second, request);
        return;
    }
    log_("client " + name + " of user " + std::to_string(client->second.user) + " refused: " + *refusal);
    clients_.erase(client);
    BusError error;
    refuse(name, SD_BUS_ERROR_ACCESS_DENIED, *refusal, error.get());
    for (const auto& request : waiting)
        if (sd_bus_reply_method_error(request.call.get(), error.get()) < 0)
            log_("a refusal could not be sent to client " + name);
}

void LidLeaseBusService::hand(Client& client, const Request& request) {
    const auto answered = [log = log_](int result) {
        if (result < 0)
            log(busFailure("An answer could not be sent", result).description);
    };
    client.mayHold = request.deadline.has_value();
    if (!request.deadline) {
        client.connection->revokeLease(
            [call = request.call, answered] { answered(sd_bus_reply_method_return(call.get(), nullptr)); });
        return;
    }
    client.wantsSuspend = request.suspendIfClosed;
    client.connection->renewLeaseUntil(
        *request.deadline, [call = request.call, answered](const std::optional<std::string>& reason) {
            answered(sd_bus_reply_method_return(call.get(), "s", reason ? reason->c_str() : ""));
        });
}

void LidLeaseBusService::left(const std::string& name) {
    const auto client = clients_.find(name);
    if (client == clients_.end())
        return;
    if (!client->second.isAllowed) {
        // The bus counts questions that are not answered, and the helper may not have too many of them.
        client->second.isGone = true;
        client->second.waiting.clear();
        return;
    }
    client->second.connection->invalidated();
    clients_.erase(client);
}

} // namespace wakeloft
