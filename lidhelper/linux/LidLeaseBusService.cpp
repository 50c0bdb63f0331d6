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

LidLeaseBusService::LidLeaseBusService(sd_bus* bus, LidLeaseListener& listener, Authorize authorize,
                                       std::function<void(const std::string&)> log)
    : bus_(bus), listener_(listener), authorize_(std::move(authorize)), log_(std::move(log)) {}

LidLeaseBusService::~LidLeaseBusService() = default;

std::expected<void, PlatformError> LidLeaseBusService::publish() {
    sd_bus_slot* slot = nullptr;
    int result =
        sd_bus_add_object_vtable(bus_, &slot, LidLeaseBus::path, LidLeaseBus::interface, vtable, this);
    object_.reset(slot);
    if (result >= 0)
        result = sd_bus_request_name(bus_, LidHelperService::label, 0);
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
    if (!self.clients_.contains(sd_bus_message_get_sender(call)))
        return sd_bus_reply_method_return(call, nullptr); // it has no lease
    return self.take({kept(call), std::nullopt, false}, error);
}

int LidLeaseBusService::take(Request request, sd_bus_error* error) {
    const std::string name = sd_bus_message_get_sender(request.call.get());
    auto client = clients_.find(name);
    if (client == clients_.end()) {
        if (const int result = admit(name, error); result < 0)
            return result;
        client = clients_.find(name);
        client->second.waiting.push_back(std::move(request));
        authorize_(name, lifetime_.guard([this, name](const std::optional<std::string>& refusal) {
            decided(name, refusal);
        }));
        return 1;
    }
    if (client->second.isAllowed) {
        hand(client->second, request);
        return 1;
    }
    if (client->second.waiting.size() >= mostWaitingRequests)
        return sd_bus_error_set(error, SD_BUS_ERROR_LIMITS_EXCEEDED, "Too many requests are waiting.");
    client->second.waiting.push_back(std::move(request));
    return 1;
}

int LidLeaseBusService::admit(const std::string& name, sd_bus_error* error) {
    Client client;
    auto leaving = watchBusName(bus_, name.c_str(), [this, name](const std::string& owner) {
        if (owner.empty())
            left(name);
    });
    // The watch is in place before the bus answers this, so that a client that is gone fails here.
    const int result = leaving ? readUser(bus_, name, client.user) : -EIO;
    if (result < 0)
        return result;
    const auto ofUser =
        std::ranges::count_if(clients_, [&](const auto& entry) { return entry.second.user == client.user; });
    if (clients_.size() >= mostClients || static_cast<std::size_t>(ofUser) >= mostClientsOfUser)
        return sd_bus_error_set(error, SD_BUS_ERROR_LIMITS_EXCEEDED,
                                "Too many programs keep the computer awake with the lid closed.");
    client.leaving = std::move(*leaving);
    client.connection = listener_.accept();
    if (client.connection == nullptr)
        return sd_bus_error_set(error, SD_BUS_ERROR_ACCESS_DENIED, "The helper accepts nobody.");
    clients_.emplace(name, std::move(client));
    return 0;
}

void LidLeaseBusService::decided(const std::string& name, const std::optional<std::string>& refusal) {
    const auto client = clients_.find(name);
    if (client == clients_.end())
        return; // it left
    const auto waiting = std::exchange(client->second.waiting, {});
    if (!refusal) {
        client->second.isAllowed = true;
        for (const auto& request : waiting)
            hand(client->second, request);
        return;
    }
    log_("client " + name + " of user " + std::to_string(client->second.user) + " refused: " + *refusal);
    for (const auto& request : waiting)
        if (sd_bus_reply_method_errorf(request.call.get(), SD_BUS_ERROR_ACCESS_DENIED, "%s",
                                       refusal->c_str()) < 0)
            log_("a refusal could not be sent to client " + name);
    clients_.erase(client); // its next request is a new beginning: the session may have become active
}

void LidLeaseBusService::hand(Client& client, const Request& request) {
    const auto answered = [log = log_](int result) {
        if (result < 0)
            log(busFailure("An answer could not be sent", result).description);
    };
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
    if (client->second.isAllowed)
        client->second.connection->invalidated();
    clients_.erase(client);
}

} // namespace wakeloft
