#include "TrayHost.h"

#include <utility>

namespace wakeloft {

namespace {

constexpr auto watcherName = "org.kde.StatusNotifierWatcher";
constexpr auto watcherInterface = "org.kde.StatusNotifierWatcher";
constexpr auto watcherPath = "/StatusNotifierWatcher";

TrayHost& self(void* userdata) {
    return *static_cast<TrayHost*>(userdata);
}

int followSignal(sd_bus* bus, BusSlot& slot, const std::string& sender, const char* member,
                 sd_bus_message_handler_t received, void* userdata) {
    sd_bus_slot* match = nullptr;
    const int result = sd_bus_match_signal_async(bus, &match, sender.c_str(), watcherPath, watcherInterface,
                                                 member, received, nullptr, userdata);
    slot.reset(match);
    return result;
}

} // namespace

std::expected<std::unique_ptr<TrayHost>, PlatformError> TrayHost::create(sd_bus* bus, std::string objectPath,
                                                                         Events events) {
    std::unique_ptr<TrayHost> host(new TrayHost(bus, std::move(objectPath), std::move(events)));
    if (auto error = host->follow())
        return std::unexpected(*std::move(error));
    return host;
}

TrayHost::TrayHost(sd_bus* bus, std::string objectPath, Events events)
    : bus_(bus), objectPath_(std::move(objectPath)), events_(std::move(events)) {}

std::optional<PlatformError> TrayHost::follow() {
    auto changes = watchBusName(bus_, watcherName, [this](std::string owner) { ownerIs(std::move(owner)); });
    if (!changes)
        return std::move(changes.error());
    ownerChanges_ = *std::move(changes);
    // Asked after the changes are followed: the bus orders both, so no owner falls in between.
    sd_bus_slot* query = nullptr;
    const int result =
        sd_bus_call_method_async(bus_, &query, "org.freedesktop.DBus", "/org/freedesktop/DBus",
                                 "org.freedesktop.DBus", "GetNameOwner", ownerFound, this, "s", watcherName);
    ownerQuery_.reset(query);
    if (result < 0)
        return busFailure("The tray cannot be looked for", result);
    return std::nullopt;
}

int TrayHost::ownerFound(sd_bus_message* reply, void* userdata, sd_bus_error*) {
    TrayHost& host = self(userdata);
    const sd_bus_error* error = sd_bus_message_get_error(reply);
    if (error != nullptr && !sd_bus_error_has_name(error, SD_BUS_ERROR_NAME_HAS_NO_OWNER))
        host.events_.failed(
            busFailure("The tray cannot be looked for", error, -sd_bus_message_get_errno(reply)));
    const char* owner = "";
    if (error == nullptr) {
        const int result = sd_bus_message_read(reply, "s", &owner);
        if (result < 0)
            return result;
    }
    host.ownerIs(owner);
    return 0;
}

void TrayHost::ownerIs(std::string owner) {
    ownerQuery_.reset();
    owner_ = std::move(owner);
    // Replies and signals of the watcher before have lost their meaning.
    isRegistered_ = false;
    registration_.reset();
    presenceQuery_.reset();
    hostComes_.reset();
    hostGoes_.reset();
    if (owner_.empty()) {
        setHosted(false);
        return;
    }
    if (toldHosted_.has_value())
        setHosted(false);
    const int result = registerObject();
    if (result < 0) {
        events_.failed(busFailure("The tray cannot be asked to show the icon", result));
        setHosted(false);
    }
}

int TrayHost::registerObject() {
    int result =
        followSignal(bus_, hostComes_, owner_, "StatusNotifierHostRegistered", hostPresenceChanged, this);
    if (result >= 0)
        result = followSignal(bus_, hostGoes_, owner_, "StatusNotifierHostUnregistered", hostPresenceChanged,
                              this);
    if (result < 0)
        return result;
    // The owner's unique name, so that the call can start nothing. The argument is a path, not a bus name:
    // the watcher then takes the item to be at the caller's unique name.
    sd_bus_slot* registration = nullptr;
    result =
        sd_bus_call_method_async(bus_, &registration, owner_.c_str(), watcherPath, watcherInterface,
                                 "RegisterStatusNotifierItem", registered, this, "s", objectPath_.c_str());
    registration_.reset(registration);
    return result;
}

int TrayHost::registered(sd_bus_message* reply, void* userdata, sd_bus_error*) {
    TrayHost& host = self(userdata);
    const BusSlot answered = std::move(host.registration_);
    if (const sd_bus_error* error = sd_bus_message_get_error(reply)) {
        // A watcher that has just gone refuses nothing; the change of its owner tells the rest.
        if (!sd_bus_error_has_name(error, SD_BUS_ERROR_SERVICE_UNKNOWN) &&
            !sd_bus_error_has_name(error, SD_BUS_ERROR_NAME_HAS_NO_OWNER))
            host.events_.failed(
                busFailure("The tray refused the icon", error, -sd_bus_message_get_errno(reply)));
        host.setHosted(false);
        return 0;
    }
    host.isRegistered_ = true;
    host.readHostPresence();
    return 0;
}

int TrayHost::hostPresenceChanged(sd_bus_message*, void* userdata, sd_bus_error*) {
    TrayHost& host = self(userdata);
    // One of several hosts may have gone, so the signal alone does not say.
    if (host.isRegistered_)
        host.readHostPresence();
    return 0;
}

void TrayHost::readHostPresence() {
    sd_bus_slot* query = nullptr;
    const int result = sd_bus_call_method_async(
        bus_, &query, owner_.c_str(), watcherPath, "org.freedesktop.DBus.Properties", "Get", hostPresenceRead,
        this, "ss", watcherInterface, "IsStatusNotifierHostRegistered");
    presenceQuery_.reset(query);
    if (result < 0) {
        events_.failed(busFailure("The tray cannot be asked for its state", result));
        setHosted(false);
    }
}

int TrayHost::hostPresenceRead(sd_bus_message* reply, void* userdata, sd_bus_error*) {
    TrayHost& host = self(userdata);
    const BusSlot answered = std::move(host.presenceQuery_);
    int hasHost = 0;
    // A watcher that is its own host may lack the property; that it accepted the item is then all there is.
    const bool isKnown =
        sd_bus_message_get_error(reply) == nullptr && sd_bus_message_read(reply, "v", "b", &hasHost) > 0;
    host.setHosted(!isKnown || hasHost != 0);
    return 0;
}

void TrayHost::setHosted(bool isHosted) {
    if (toldHosted_ == isHosted)
        return;
    toldHosted_ = isHosted;
    events_.changed(isHosted);
}

} // namespace wakeloft
