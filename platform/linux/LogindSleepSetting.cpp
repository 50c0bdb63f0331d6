#include "LogindSleepSetting.h"

#include "lease/LidSleepLease.h"

#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <string_view>
#include <thread>
#include <utility>

namespace wakeloft {

namespace {

constexpr const char* service = "org.freedesktop.login1";
constexpr const char* path = "/org/freedesktop/login1";
constexpr const char* interface = "org.freedesktop.login1.Manager";
constexpr const char* lockedOperations = "sleep:handle-lid-switch";

bool holdsBoth(std::string_view what) {
    bool hasSleep = false;
    bool hasLid = false;
    while (!what.empty()) {
        const auto name = what.substr(0, what.find(':'));
        hasSleep = hasSleep || name == "sleep";
        hasLid = hasLid || name == "handle-lid-switch";
        what.remove_prefix(std::min(name.size() + 1, what.size()));
    }
    return hasSleep && hasLid;
}

/// A name that others gave themselves, fit for one line: printable ASCII, and not too much of it.
std::string presentable(std::string_view name) {
    constexpr std::size_t most = 64;
    std::string text(name.substr(0, most));
    std::ranges::replace_if(
        text, [](unsigned char character) { return character < ' ' || character > '~'; }, '?');
    return text.empty() ? "a program without a name" : text;
}

/// Nobody is there who could honour a lock.
bool meansAbsent(const PlatformError& error) {
    return error.domain == "org.freedesktop.DBus.Error.ServiceUnknown" ||
           error.domain == "org.freedesktop.DBus.Error.NameHasNoOwner" ||
           error.domain == "org.freedesktop.DBus.Error.Disconnected" ||
           error.domain == "org.freedesktop.systemd1.NoSuchUnit" ||
           error.domain.starts_with("org.freedesktop.DBus.Error.Spawn.");
}

} // namespace

LogindSleepSetting::LogindSleepSetting(BusConnection& systemBus, std::string who, std::string why)
    : systemBus_(systemBus), who_(std::move(who)), why_(std::move(why)) {}

LogindSleepSetting::~LogindSleepSetting() {
    closeDescriptor();
}

std::expected<void, PlatformError> LogindSleepSetting::writeDisabled(bool disabled) {
    const Deadline deadline(LidSleepLease::writeTimeout);
    if (disabled)
        return take(deadline);
    isOn_ = false;
    const bool wasHeld = isHeld();
    closeDescriptor();
    isReleaseOpen_ = isReleaseOpen_ || wasHeld;
    if (wasHeld && released_)
        released_();
    return isReleaseOpen_ ? awaitGone(deadline) : std::expected<void, PlatformError>{};
}

std::expected<bool, PlatformError> LogindSleepSetting::readDisabled() {
    const Deadline deadline(LidSleepLease::readTimeout);
    if (!isOn_) {
        auto holder = heldElsewhere(deadline);
        if (!holder)
            return std::unexpected(std::move(holder.error()));
        return holder->has_value();
    }
    if (isHeld()) {
        if (isListed_ && isOtherEndHeld())
            return true;
        const auto locks = lidLocks(deadline);
        if (!locks)
            return std::unexpected(locks.error());
        const auto own = static_cast<std::uint32_t>(getpid());
        if (std::ranges::any_of(*locks, [own](const auto& lock) { return lock.process == own; })) {
            isListed_ = propertiesWatch_ != nullptr;
            return true;
        }
    }
    closeDescriptor();
    isOn_ = false;
    return false;
}

void LogindSleepSetting::forbid(std::string reason) {
    forbiddenFor_ = std::move(reason);
    if (!isHeld())
        return;
    closeDescriptor(); // and still on: the next look finds it turned off
    if (released_)
        released_();
}

std::expected<void, PlatformError> LogindSleepSetting::watch(std::function<void()> changed) {
    const auto bus = systemBus_.bus();
    if (!bus)
        return std::unexpected(bus.error());
    const auto tell = [this, changed = std::move(changed)] {
        isListed_ = false; // until it is seen again
        if (isOn_)
            changed();
    };
    auto owner = watchBusName(*bus, service, [tell](const std::string&) { tell(); });
    auto properties =
        matchBusSignal(*bus,
                       "type='signal',sender='org.freedesktop.login1',path='/org/freedesktop/login1',"
                       "interface='org.freedesktop.DBus.Properties',member='PropertiesChanged',"
                       "arg0='org.freedesktop.login1.Manager'",
                       [tell](sd_bus_message*) { tell(); });
    if (!owner || !properties)
        return std::unexpected(owner ? properties.error() : owner.error());
    ownerWatch_ = std::move(*owner);
    propertiesWatch_ = std::move(*properties);
    return {};
}

std::expected<void, PlatformError> LogindSleepSetting::take(const Deadline& deadline) {
    constexpr const char* refused =
        "The login manager refused to keep the computer awake with the lid closed";
    if (forbiddenFor_)
        return std::unexpected(PlatformError{"", 0, *forbiddenFor_});
    const auto elsewhere = heldElsewhere(deadline);
    if (!elsewhere)
        return std::unexpected(elsewhere.error());
    if (*elsewhere)
        return std::unexpected(PlatformError{"", 0, **elsewhere});
    const auto bus = systemBus_.bus();
    if (!bus)
        return std::unexpected(bus.error());
    sd_bus_message* message = nullptr;
    int result = sd_bus_message_new_method_call(*bus, &message, service, path, interface, "Inhibit");
    const BusMessage call(message);
    if (result >= 0)
        result =
            sd_bus_message_append(message, "ssss", lockedOperations, who_.c_str(), why_.c_str(), "block");
    if (result < 0)
        return std::unexpected(busFailure(refused, result));
    const auto reply = deadline.call(*bus, message, refused);
    if (!reply)
        return std::unexpected(reply.error());
    int borrowed = -1;
    result = sd_bus_message_read(reply->get(), "h", &borrowed);
    if (result >= 0) {
        closeDescriptor();
        descriptor_ = fcntl(borrowed, F_DUPFD_CLOEXEC, 3);
        result = descriptor_ < 0 ? -errno : 0;
    }
    if (result < 0)
        return std::unexpected(busFailure("The login manager's lock cannot be kept", result));
    isOn_ = true;
    auto isListed = readDisabled();
    if (isListed && *isListed)
        return {};
    closeDescriptor();
    isOn_ = false;
    isReleaseOpen_ = true;
    if (!isListed)
        return std::unexpected(std::move(isListed.error()));
    return std::unexpected(PlatformError{"", 0, "The login manager gave a lock that it does not list."});
}

// The login manager takes notice of a closed descriptor a moment later.
std::expected<void, PlatformError> LogindSleepSetting::awaitGone(const Deadline& deadline) {
    const auto own = static_cast<std::uint32_t>(getpid());
    auto pause = std::chrono::milliseconds(1);
    constexpr auto longestPause = std::chrono::milliseconds(50);
    while (!deadline.isOver()) {
        const bool hasBus = systemBus_.bus().has_value();
        const auto locks = lidLocks(deadline);
        if (hasBus && !locks && !meansAbsent(locks.error()))
            return std::unexpected(locks.error());
        if (!locks || std::ranges::none_of(*locks, [own](const auto& lock) { return lock.process == own; })) {
            isReleaseOpen_ = false;
            return {};
        }
        std::this_thread::sleep_for(pause);
        pause = std::min(pause * 2, longestPause);
    }
    return std::unexpected(PlatformError{"", 0, "The login manager still lists the lock that was let go."});
}

/// Who does, in words.
std::expected<std::optional<std::string>, PlatformError>
LogindSleepSetting::heldElsewhere(const Deadline& deadline) {
    const auto locks = lidLocks(deadline);
    if (!locks)
        return std::unexpected(locks.error());
    const auto own = static_cast<std::uint32_t>(getpid());
    for (const auto& lock : *locks)
        if (lock.process != own)
            return "The computer is already kept awake with the lid closed by " + presentable(lock.who) +
                   " (user " + std::to_string(lock.user) + ", process " + std::to_string(lock.process) + ").";
    const auto isMasked = isSuspendMasked(deadline);
    if (!isMasked)
        return std::unexpected(isMasked.error());
    if (*isMasked)
        return "Sleep is masked on this computer (suspend.target).";
    return std::nullopt;
}

std::expected<std::vector<ListedInhibitor>, PlatformError>
LogindSleepSetting::lidLocks(const Deadline& deadline) {
    constexpr const char* unlisted = "The login manager cannot be asked who keeps the computer awake";
    const auto bus = systemBus_.bus();
    if (!bus)
        return std::unexpected(bus.error());
    sd_bus_message* message = nullptr;
    int result = sd_bus_message_new_method_call(*bus, &message, service, path, interface, "ListInhibitors");
    const BusMessage call(message);
    if (result < 0)
        return std::unexpected(busFailure(unlisted, result));
    const auto reply = deadline.call(*bus, message, unlisted);
    if (!reply)
        return std::unexpected(reply.error());
    auto locks = ListedInhibitor::readAll(reply->get());
    if (!locks)
        return std::unexpected(busFailure(unlisted, locks.error()));
    std::erase_if(*locks,
                  [](const ListedInhibitor& each) { return each.mode != "block" || !holdsBoth(each.what); });
    return std::move(*locks);
}

std::expected<bool, PlatformError> LogindSleepSetting::isSuspendMasked(const Deadline& deadline) {
    constexpr const char* unknown = "The service manager cannot be asked whether sleep is masked";
    const auto bus = systemBus_.bus();
    if (!bus)
        return std::unexpected(bus.error());
    sd_bus_message* message = nullptr;
    int result = sd_bus_message_new_method_call(*bus, &message, "org.freedesktop.systemd1",
                                                "/org/freedesktop/systemd1",
                                                "org.freedesktop.systemd1.Manager", "GetUnitFileState");
    const BusMessage call(message);
    if (result >= 0)
        result = sd_bus_message_append(message, "s", "suspend.target");
    if (result < 0)
        return std::unexpected(busFailure(unknown, result));
    const auto reply = deadline.call(*bus, message, unknown);
    if (!reply) {
        // Without a service manager, or without the unit, there is nothing to mask.
        if (meansAbsent(reply.error()) || reply.error().code == -ENOENT)
            return false;
        return std::unexpected(reply.error());
    }
    const char* state = nullptr;
    result = sd_bus_message_read(reply->get(), "s", &state);
    if (result < 0)
        return std::unexpected(busFailure(unknown, result));
    return std::string_view(state) == "masked" || std::string_view(state) == "masked-runtime";
}

// The login manager keeps the reading end exactly as long as the lock is on its list.
bool LogindSleepSetting::isOtherEndHeld() const {
    pollfd end{descriptor_, 0, 0};
    return poll(&end, 1, 0) == 0; // otherwise the kernel tells of an error: nobody reads
}

void LogindSleepSetting::closeDescriptor() {
    isListed_ = false;
    if (isHeld())
        close(std::exchange(descriptor_, -1));
}

} // namespace wakeloft
