#include "LidLeaseBusConnection.h"

#include "LidLeaseBus.h"

#include <cerrno>
#include <string_view>
#include <utility>

namespace wakeloft {

namespace {

constexpr const char* unreachable = "The lid helper cannot be reached";

/// A connection's own name begins with a colon; the bus itself has another, and libsystemd speaks in its
/// stead.
bool isFromHelper(sd_bus_message* answer) {
    const char* sender = sd_bus_message_get_sender(answer);
    return sender != nullptr && *sender == ':';
}

} // namespace

LidLeaseConnectionFactory LidLeaseBusConnection::factory(sd_event* event, SuspendIfClosed suspendIfClosed,
                                                         Trouble trouble) {
    return [event, suspendIfClosed = std::move(suspendIfClosed),
            trouble = std::move(trouble)](const std::string& name) {
        std::unique_ptr<LidLeaseBusConnection> connection(
            new LidLeaseBusConnection(name, suspendIfClosed, trouble));
        if (const int result = connection->open(event); result < 0) {
            trouble(busFailure(unreachable, result));
            connection.reset();
        }
        return connection;
    };
}

LidLeaseBusConnection::LidLeaseBusConnection(std::string name, SuspendIfClosed suspendIfClosed,
                                             Trouble trouble)
    : name_(std::move(name)), suspendIfClosed_(std::move(suspendIfClosed)), trouble_(std::move(trouble)) {}

// Requests wait in the connection until the bus has greeted it.
int LidLeaseBusConnection::open(sd_event* event) {
    sd_bus* bus = nullptr;
    const int result = sd_bus_open_system_with_description(&bus, "lid lease");
    bus_.reset(bus);
    return result < 0 ? result : sd_bus_attach_event(bus, event, SD_EVENT_PRIORITY_NORMAL);
}

void LidLeaseBusConnection::renewLeaseUntil(double until, RenewalReply reply, Failed failed) {
    BusMessage call;
    int result = newCall("RenewLease", call);
    if (result >= 0)
        result = sd_bus_message_append(call.get(), "da{sv}", until, 1, LidLeaseBus::suspendIfClosed, "b",
                                       suspendIfClosed_() ? 1 : 0);
    send(
        call, result,
        [this, reply = std::move(reply), failed](sd_bus_message* answer) {
            const char* reason = nullptr;
            const auto* error = sd_bus_message_get_error(answer);
            if (error != nullptr) {
                const auto failure = busFailure("The lid helper refused", error, -EIO);
                if (!isFromHelper(answer))
                    return fail(busFailure(unreachable, error, -EIO), failed);
                trouble_(failure);
                const bool hasText = error->message != nullptr && *error->message != '\0';
                return reply(hasText ? error->message : failure.description);
            }
            if (const int read = sd_bus_message_read(answer, "s", &reason); read < 0)
                return fail(busFailure("The lid helper's answer cannot be read", read), failed);
            reply(*reason == '\0' ? std::nullopt : std::optional<std::string>(reason));
        },
        failed);
}

void LidLeaseBusConnection::revokeLease(std::function<void()> reply, Failed failed) {
    BusMessage call;
    const int result = newCall("RevokeLease", call);
    send(
        call, result,
        [this, reply = std::move(reply), failed](sd_bus_message* answer) {
            if (const auto* error = sd_bus_message_get_error(answer))
                return fail(busFailure("The lid helper did not end the lease", error, -EIO), failed);
            reply();
        },
        failed);
}

void LidLeaseBusConnection::invalidate() {
    pending_.clear();
    bus_.reset();
}

int LidLeaseBusConnection::newCall(const char* method, BusMessage& call) const {
    sd_bus_message* message = nullptr;
    const int result =
        bus_ == nullptr ? -ENOTCONN
                        : sd_bus_message_new_method_call(bus_.get(), &message, name_.c_str(),
                                                         LidLeaseBus::path, LidLeaseBus::interface, method);
    call.reset(message);
    return result;
}

void LidLeaseBusConnection::send(const BusMessage& call, int result, Answered answered,
                                 const Failed& failed) {
    if (result < 0)
        return fail(busFailure(unreachable, result), failed);
    const auto number = ++lastRequest_;
    auto slot = callBusLater(bus_.get(), call.get(),
                             [this, number, answered = std::move(answered)](sd_bus_message* answer) {
                                 pending_.erase(number);
                                 answered(answer);
                             });
    if (slot)
        pending_.emplace(number, std::move(*slot));
    else
        fail(slot.error(), failed);
}

void LidLeaseBusConnection::fail(const PlatformError& error, const Failed& failed) const {
    trouble_(error);
    failed();
}

} // namespace wakeloft
