#include "LoginManagerInhibitor.h"

#include "ListedInhibitor.h"
#include "WakeSignal.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <string_view>
#include <utility>

namespace wakeloft {

namespace {

constexpr const char* service = "org.freedesktop.login1";
constexpr const char* path = "/org/freedesktop/login1";
constexpr const char* interface = "org.freedesktop.login1.Manager";
constexpr Seconds pauseBeforeAskingAgain = 5;
constexpr const char* refused = "The login manager refused to hold off sleep";

bool meansAbsent(std::string_view errorName) {
    constexpr std::array<std::string_view, 4> names = {
        "org.freedesktop.DBus.Error.ServiceUnknown", "org.freedesktop.DBus.Error.NameHasNoOwner",
        "org.freedesktop.DBus.Error.Disconnected", "org.freedesktop.systemd1.NoSuchUnit"};
    for (const auto name : names)
        if (name == errorName)
            return true;
    return errorName.starts_with("org.freedesktop.DBus.Error.Spawn.");
}

} // namespace

LoginManagerInhibitor::LoginManagerInhibitor(BusConnection& systemBus, std::string who, std::string why,
                                             std::function<void()> changed)
    : systemBus_(systemBus),
      who_(std::move(who)),
      why_(std::move(why)),
      changed_(std::move(changed)),
      reopened_(systemBus.reopened().subscribe([this] {
          isWatching_ = false;
          watch();
          verify();
      })),
      lost_(systemBus.lost().subscribe([this] {
          pending_.reset();
          if (!isWanted_)
              return;
          // The descriptor stays: a login manager that still runs, or comes back, still honours it.
          hold_ = {Hold::State::absent, PlatformError{"", 0, "The system bus went away."}};
          changed_();
      })) {}

LoginManagerInhibitor::~LoginManagerInhibitor() {
    release();
}

const Hold& LoginManagerInhibitor::take() {
    isWanted_ = true;
    if (hold_.isHeld())
        return hold_;
    const auto bus = systemBus_.bus();
    if (!bus) {
        hold_ = {Hold::State::absent, bus.error()};
        return hold_;
    }
    watch();
    pending_.reset(); // whatever it would have told, the answer below is newer
    const auto inhibit = inhibitCall(*bus);
    auto reply = inhibit != nullptr
                     ? callBus(*bus, inhibit.get(), refused)
                     : std::unexpected(busFailure("The login manager cannot be asked", -ENOMEM));
    if (reply)
        accept(reply->get());
    else
        refuse(std::move(reply.error()));
    return hold_;
}

void LoginManagerInhibitor::release() {
    isWanted_ = false;
    hold_ = {};
    closeDescriptor();
}

bool LoginManagerInhibitor::isIdleActionIgnored() {
    const auto bus = systemBus_.bus();
    if (!bus)
        return false;
    sd_bus_message* get = nullptr;
    int result =
        sd_bus_message_new_method_call(*bus, &get, service, path, "org.freedesktop.DBus.Properties", "Get");
    const BusMessage owned(get);
    if (result >= 0)
        result = sd_bus_message_append(get, "ss", interface, "IdleAction");
    if (result < 0)
        return false; // unknown: better held once too often
    const auto reply = callBus(*bus, get, "The login manager's idle action cannot be read");
    const char* action = nullptr;
    return reply && sd_bus_message_read(reply->get(), "v", "s", &action) >= 0 &&
           std::string_view(action) == "ignore";
}

void LoginManagerInhibitor::takeSoon() {
    if (isWanted_)
        return; // its own watches take it again
    isWanted_ = true;
    watch();
    takeLater();
}

void LoginManagerInhibitor::watch() {
    const auto bus = systemBus_.bus();
    if (isWatching_ || !bus)
        return;
    auto owner = watchBusName(*bus, service, [this](const std::string&) { verify(); });
    auto wake = watchWakeSignal(*bus, [this] { verify(); });
    if (!owner || !wake) {
        hold_.trouble = owner ? wake.error() : owner.error();
        return;
    }
    isWatching_ = true;
    ownerWatch_ = std::move(*owner);
    wakeWatch_ = std::move(*wake);
}

// Asks, and so also starts a login manager that the system can start, whether it still knows the inhibitor.
void LoginManagerInhibitor::verify() {
    if (!isWanted_)
        return;
    const auto bus = systemBus_.bus();
    if (!bus)
        return; // told by `lost`
    if (descriptor_ < 0) {
        takeLater();
        return;
    }
    const auto list = call(*bus, "ListInhibitors");
    auto slot = callBusLater(*bus, list.get(), [this](sd_bus_message* reply) { listed(reply); });
    if (slot) {
        pending_ = std::move(*slot);
    } else {
        refuse(slot.error());
        changed_();
    }
}

void LoginManagerInhibitor::listed(sd_bus_message* reply) {
    pending_.reset();
    if (!isWanted_)
        return;
    if (const auto* error = sd_bus_message_get_error(reply)) {
        if (!meansAbsent(error->name)) {
            // Too busy to answer, such as after a wake: nothing is known to have changed.
            systemBus_.loop().performAfter(pauseBeforeAskingAgain, lifetime_.guard([this] { verify(); }));
            return;
        }
        hold_ = {Hold::State::absent, busFailure("The login manager went away", error, -EIO)};
    } else if (lists(reply)) {
        hold_ = {Hold::State::held, std::nullopt};
    } else {
        closeDescriptor();
        takeLater();
    }
    changed_();
}

bool LoginManagerInhibitor::lists(sd_bus_message* reply) const {
    const auto all = ListedInhibitor::readAll(reply);
    return all && std::ranges::any_of(*all, [this](const ListedInhibitor& each) {
               return each.what == "idle" && each.who == who_ && each.why == why_ &&
                      each.process == static_cast<std::uint32_t>(getpid());
           });
}

void LoginManagerInhibitor::takeLater() {
    const auto bus = systemBus_.bus();
    if (!bus)
        return;
    hold_ = {Hold::State::asking, std::nullopt};
    const auto inhibit = inhibitCall(*bus);
    auto slot = callBusLater(*bus, inhibit.get(), [this](sd_bus_message* reply) { answered(reply); });
    if (slot)
        pending_ = std::move(*slot);
    else
        refuse(slot.error());
}

void LoginManagerInhibitor::answered(sd_bus_message* reply) {
    pending_.reset();
    if (!isWanted_)
        return; // the descriptor in the reply is closed with it
    if (const auto* error = sd_bus_message_get_error(reply))
        refuse(busFailure(refused, error, -EIO));
    else
        accept(reply);
    changed_();
}

void LoginManagerInhibitor::accept(sd_bus_message* reply) {
    int borrowed = -1;
    int result = sd_bus_message_read(reply, "h", &borrowed);
    if (result >= 0) {
        closeDescriptor();
        descriptor_ = fcntl(borrowed, F_DUPFD_CLOEXEC, 3);
        result = descriptor_ < 0 ? -errno : 0;
    }
    if (result < 0)
        hold_ = {Hold::State::failed, busFailure("The login manager's inhibitor cannot be kept", result)};
    else
        hold_ = {Hold::State::held, std::nullopt};
}

void LoginManagerInhibitor::refuse(PlatformError error) {
    const auto state = meansAbsent(error.domain) ? Hold::State::absent : Hold::State::failed;
    hold_ = {state, std::move(error)};
}

void LoginManagerInhibitor::closeDescriptor() {
    if (descriptor_ >= 0)
        close(std::exchange(descriptor_, -1));
}

BusMessage LoginManagerInhibitor::call(sd_bus* bus, const char* method) const {
    sd_bus_message* message = nullptr;
    const int result = sd_bus_message_new_method_call(bus, &message, service, path, interface, method);
    return result < 0 ? nullptr : BusMessage(message);
}

BusMessage LoginManagerInhibitor::inhibitCall(sd_bus* bus) const {
    auto message = call(bus, "Inhibit");
    if (message == nullptr ||
        sd_bus_message_append(message.get(), "ssss", "idle", who_.c_str(), why_.c_str(), "block") < 0)
        return nullptr;
    return message;
}

} // namespace wakeloft
