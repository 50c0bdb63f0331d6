#include "SessionInhibitor.h"

#include "ProgramLocation.h"

#include <algorithm>
#include <cerrno>
#include <string_view>
#include <utility>

namespace wakeloft {

namespace {

enum class Dialect { sessionManager, powerManagement, portal };

struct Service {
    const char* name;
    const char* path;
    const char* interface;
    Dialect dialect;
};

// In the order of preference. The last name is watched only, never asked.
constexpr std::array<Service, 5> services = {{
    {"org.gnome.SessionManager", "/org/gnome/SessionManager", "org.gnome.SessionManager",
     Dialect::sessionManager},
    {"org.mate.SessionManager", "/org/mate/SessionManager", "org.mate.SessionManager",
     Dialect::sessionManager},
    {"org.freedesktop.PowerManagement", "/org/freedesktop/PowerManagement/Inhibit",
     "org.freedesktop.PowerManagement.Inhibit", Dialect::powerManagement},
    {"org.freedesktop.portal.Desktop", "/org/freedesktop/portal/desktop", "org.freedesktop.portal.Inhibit",
     Dialect::portal},
    {"org.kde.Solid.PowerManagement", "", "", Dialect::powerManagement},
}};
constexpr std::size_t kdePowerManagement = 4;
constexpr std::uint32_t inhibitSuspend = 4; // the session managers' and the portal's flag

} // namespace

SessionInhibitor::SessionInhibitor(sd_bus* sessionBus, std::string who, std::string why,
                                   std::function<void()> changed)
    : bus_(sessionBus), who_(std::move(who)), why_(std::move(why)), changed_(std::move(changed)) {
    static_assert(services.size() == nameCount);
    if (bus_ == nullptr)
        return;
    for (std::size_t name = 0; name < nameCount; ++name) {
        auto watch = watchBusName(bus_, services[name].name,
                                  [this, name](std::string owner) { ownerChanged(name, std::move(owner)); });
        if (watch)
            watches_[name] = std::move(*watch);
        else
            hold_.trouble = watch.error();
    }
}

SessionInhibitor::~SessionInhibitor() {
    release();
}

const Hold& SessionInhibitor::take() {
    isWanted_ = true;
    if (hold_.isHeld())
        return hold_;
    if (bus_ != nullptr && !areOwnersKnown_ && !learnOwners())
        return hold_;
    const auto service = firstService();
    if (!service) {
        hold_.state = Hold::State::absent;
        return hold_;
    }
    const auto call = inhibitCall(*service);
    auto reply = call != nullptr
                     ? callBus(bus_, call.get(), "The desktop refused to hold off sleep")
                     : std::unexpected(busFailure("The desktop cannot be asked to hold off sleep", -ENOMEM));
    if (reply) {
        accept(*service, reply->get());
        return hold_;
    }
    if (reply.error().code == -ETIMEDOUT)
        expectLateAnswer(*service, call.get());
    hold_ = {Hold::State::failed, reply.error()};
    return hold_;
}

void SessionInhibitor::release() {
    isWanted_ = false;
    hold_ = {};
    if (cookie_)
        letGo(*std::exchange(cookie_, std::nullopt));
}

bool SessionInhibitor::isKdePowerManagementRunning() {
    if (bus_ != nullptr && !areOwnersKnown_ && !learnOwners())
        return false;
    return !owners_[kdePowerManagement].empty();
}

// One call for all names; each later change is told by its watch.
bool SessionInhibitor::learnOwners() {
    sd_bus_message* list = nullptr;
    const int result = sd_bus_message_new_method_call(
        bus_, &list, "org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus", "ListNames");
    const BusMessage owned(list);
    constexpr const char* what = "The services of this session cannot be listed";
    const auto listed = result < 0 ? std::unexpected(busFailure(what, result)) : callBus(bus_, list, what);
    if (!listed) {
        hold_ = {Hold::State::failed, listed.error()};
        return false;
    }
    sd_bus_message* reply = listed->get();
    areOwnersKnown_ = true;
    if (sd_bus_message_enter_container(reply, 'a', "s") < 0)
        return true; // an empty bus
    const char* name = nullptr;
    while (sd_bus_message_read(reply, "s", &name) > 0)
        for (std::size_t index = 0; index < nameCount; ++index)
            if (std::string_view(name) == services[index].name && owners_[index].empty())
                owners_[index] = name;
    return true;
}

void SessionInhibitor::ownerChanged(std::size_t name, std::string newOwner) {
    owners_[name] = std::move(newOwner);
    if (!isWanted_)
        return;
    if (name == kdePowerManagement) {
        changed_();
        return;
    }
    // Word of the owner that has answered already is no restart.
    if (cookie_ && cookie_->service == name && cookie_->owner == owners_[name])
        return;
    if (cookie_ && cookie_->service == name) {
        cookie_.reset(); // the service that knew it is gone
        hold_ = {};
    }
    if (!hold_.isHeld() && pending_ == nullptr)
        takeLater();
    changed_();
}

std::optional<std::size_t> SessionInhibitor::firstService() const {
    for (std::size_t index = 0; index < kdePowerManagement; ++index)
        // Outside a sandbox the portal answers before it asks anybody, so its answer says nothing.
        if (!owners_[index].empty() &&
            (services[index].dialect != Dialect::portal || currentSandbox() != Sandbox::none))
            return index;
    return std::nullopt;
}

BusMessage SessionInhibitor::inhibitCall(std::size_t service) const {
    const auto& [name, path, interface, dialect] = services[service];
    sd_bus_message* call = nullptr;
    int result = sd_bus_message_new_method_call(bus_, &call, name, path, interface, "Inhibit");
    BusMessage owned(call);
    if (result >= 0)
        result = sd_bus_message_set_auto_start(call, 0);
    if (result >= 0 && dialect == Dialect::sessionManager)
        result = sd_bus_message_append(call, "susu", who_.c_str(), 0U, why_.c_str(), inhibitSuspend);
    else if (result >= 0 && dialect == Dialect::powerManagement)
        result = sd_bus_message_append(call, "ss", who_.c_str(), why_.c_str());
    else if (result >= 0)
        result = sd_bus_message_append(call, "sua{sv}", "", inhibitSuspend, 1, "reason", "s", why_.c_str());
    return result < 0 ? nullptr : std::move(owned);
}

std::optional<SessionInhibitor::Cookie> SessionInhibitor::cookieIn(std::size_t service,
                                                                   sd_bus_message* reply) const {
    Cookie cookie;
    cookie.service = service;
    if (const char* sender = sd_bus_message_get_sender(reply))
        cookie.owner = sender;
    if (services[service].dialect == Dialect::portal) {
        const char* handle = nullptr;
        if (sd_bus_message_read(reply, "o", &handle) < 0)
            return std::nullopt;
        cookie.handle = handle;
    } else if (sd_bus_message_read(reply, "u", &cookie.number) < 0) {
        return std::nullopt;
    }
    return cookie;
}

void SessionInhibitor::accept(std::size_t service, sd_bus_message* reply) {
    cookie_ = cookieIn(service, reply);
    if (cookie_)
        hold_ = {Hold::State::held, std::nullopt};
    else
        hold_ = {Hold::State::failed, PlatformError{services[service].name, 0,
                                                    std::string("The desktop's answer cannot be read (") +
                                                        services[service].name + ")."}};
}

void SessionInhibitor::takeLater() {
    const auto service = firstService();
    if (!service) {
        hold_ = {};
        return;
    }
    hold_ = {Hold::State::asking, std::nullopt};
    const auto call = inhibitCall(*service);
    auto slot = callBusLater(bus_, call.get(),
                             [this, index = *service](sd_bus_message* reply) { answered(index, reply); });
    if (!slot) {
        hold_ = {Hold::State::failed, slot.error()};
        return;
    }
    pending_ = std::move(*slot);
    pendingCall_.reset(sd_bus_message_ref(call.get()));
}

void SessionInhibitor::answered(std::size_t service, sd_bus_message* reply) {
    pending_.reset();
    if (const auto* error = sd_bus_message_get_error(reply)) {
        if (std::string_view(error->name) == "org.freedesktop.DBus.Error.NoReply")
            expectLateAnswer(service, pendingCall_.get());
        if (isWanted_ && !cookie_) {
            hold_ = {Hold::State::failed, busFailure("The desktop refused to hold off sleep", error, -EIO)};
            if (owners_[service].empty())
                takeLater(); // it did not refuse, it died
        }
    } else if (isWanted_ && !cookie_) {
        accept(service, reply);
    } else if (const auto unwanted = cookieIn(service, reply)) {
        letGo(*unwanted); // released, or taken anew, while it was on its way
    }
    if (isWanted_)
        changed_();
}

// A service that grants after all, long after nobody waits, must not be left holding sleep off.
void SessionInhibitor::expectLateAnswer(std::size_t service, sd_bus_message* call) {
    std::uint64_t serial = 0;
    if (call == nullptr || sd_bus_message_get_cookie(call, &serial) < 0)
        return;
    late_.emplace(serial, service);
    if (lateAnswers_ != nullptr)
        return;
    sd_bus_slot* slot = nullptr;
    const auto heard = [](sd_bus_message* message, void* userdata, sd_bus_error*) {
        static_cast<SessionInhibitor*>(userdata)->heardLate(message);
        return 0;
    };
    if (sd_bus_add_filter(bus_, &slot, heard, this) >= 0)
        lateAnswers_.reset(slot);
}

void SessionInhibitor::heardLate(sd_bus_message* message) {
    std::uint64_t serial = 0;
    if (sd_bus_message_is_method_call(message, nullptr, nullptr) != 0 ||
        sd_bus_message_get_reply_cookie(message, &serial) < 0)
        return;
    const auto found = late_.find(serial);
    if (found == late_.end())
        return;
    const auto service = found->second;
    late_.erase(found);
    if (sd_bus_message_is_method_error(message, nullptr) != 0)
        return;
    if (const auto unwanted = cookieIn(service, message))
        letGo(*unwanted);
}

void SessionInhibitor::letGo(const Cookie& cookie) const {
    const auto& [name, path, interface, dialect] = services[cookie.service];
    sd_bus_message* call = nullptr;
    int result = 0;
    if (dialect == Dialect::portal) {
        result = sd_bus_message_new_method_call(bus_, &call, name, cookie.handle.c_str(),
                                                "org.freedesktop.portal.Request", "Close");
    } else {
        const char* method = dialect == Dialect::sessionManager ? "Uninhibit" : "UnInhibit";
        result = sd_bus_message_new_method_call(bus_, &call, name, path, interface, method);
        if (result >= 0)
            result = sd_bus_message_append(call, "u", cookie.number);
    }
    const BusMessage owned(call);
    // Not waited for: a service that is gone, or refuses, has nothing left that could be let go of.
    if (result >= 0 && sd_bus_message_set_auto_start(call, 0) >= 0 &&
        sd_bus_message_set_expect_reply(call, 0) >= 0)
        sd_bus_send(bus_, call, nullptr);
}

} // namespace wakeloft
