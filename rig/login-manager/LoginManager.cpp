#include "LoginManager.h"

#include <unistd.h>

#include <array>
#include <ctime>
#include <iostream>
#include <string_view>
#include <utility>

namespace wakeloft::rig {
namespace {

constexpr const char* managerPath = "/org/freedesktop/login1";
constexpr const char* managerInterface = "org.freedesktop.login1.Manager";
constexpr const char* lidInterface = "com.wakeloft.Rig.Lid";
constexpr const char* operationInProgress = "org.freedesktop.login1.OperationInProgress";
constexpr std::chrono::microseconds sleepTime{300'000};

/// Reads who is calling from the bus, which has it from the kernel.
int readCaller(sd_bus_message* message, Inhibitor& inhibitor) {
    sd_bus_creds* credentials = nullptr;
    int result = sd_bus_query_sender_creds(message, SD_BUS_CREDS_PID | SD_BUS_CREDS_EUID, &credentials);
    const Credentials owned(credentials);
    if (result >= 0) {
        result = sd_bus_creds_get_pid(credentials, &inhibitor.process);
    }
    return result < 0 ? result : sd_bus_creds_get_euid(credentials, &inhibitor.user);
}

} // namespace

LoginManager::LoginManager(const BusService& service, IdleAction idleAction)
    : service_(service),
      idleAction_(idleAction),
      inhibitors_(service.event(), [this] { inhibitorsChanged(); }) {}

Outcome LoginManager::publish() {
    static const std::array table = {
        sd_bus_vtable SD_BUS_VTABLE_START(0),
        sd_bus_vtable SD_BUS_METHOD("Inhibit", "ssss", "h", inhibit, SD_BUS_VTABLE_UNPRIVILEGED),
        sd_bus_vtable SD_BUS_METHOD("ListInhibitors", "", "a(ssssuu)", listInhibitors,
                                    SD_BUS_VTABLE_UNPRIVILEGED),
        sd_bus_vtable SD_BUS_METHOD("Suspend", "b", "", suspend, SD_BUS_VTABLE_UNPRIVILEGED),
        sd_bus_vtable SD_BUS_PROPERTY("BlockInhibited", "s", property, 0,
                                      SD_BUS_VTABLE_PROPERTY_EMITS_CHANGE),
        sd_bus_vtable SD_BUS_PROPERTY("DelayInhibited", "s", property, 0, 0),
        sd_bus_vtable SD_BUS_PROPERTY("IdleAction", "s", property, 0, SD_BUS_VTABLE_PROPERTY_CONST),
        sd_bus_vtable SD_BUS_PROPERTY("PreparingForSleep", "b", property, 0, 0),
        sd_bus_vtable SD_BUS_PROPERTY("LidClosed", "b", property, 0, 0),
        sd_bus_vtable SD_BUS_PROPERTY("Docked", "b", property, 0, 0),
        sd_bus_vtable SD_BUS_SIGNAL("PrepareForSleep", "b", 0),
        sd_bus_vtable SD_BUS_VTABLE_END,
    };
    static const std::array lidTable = {
        sd_bus_vtable SD_BUS_VTABLE_START(0),
        sd_bus_vtable SD_BUS_METHOD("Set", "bb", "", setLid, SD_BUS_VTABLE_UNPRIVILEGED),
        sd_bus_vtable SD_BUS_VTABLE_END,
    };
    int result =
        sd_bus_add_object_vtable(service_.bus(), nullptr, managerPath, managerInterface, table.data(), this);
    if (result >= 0) {
        result = sd_bus_add_object_vtable(service_.bus(), nullptr, managerPath, lidInterface, lidTable.data(),
                                          this);
    }
    if (result >= 0) {
        sd_event_source* timer = nullptr;
        result =
            sd_event_add_time_relative(service_.event(), &timer, CLOCK_MONOTONIC, 0, 1000, timeIsUp, this);
        timer_.reset(timer);
    }
    if (result >= 0) {
        result = sd_event_source_set_enabled(timer_.get(), SD_EVENT_OFF);
        inhibitorsChanged();
    }
    return outcome("Cannot publish the login manager", result);
}

int LoginManager::inhibit(sd_bus_message* message, void* userData, sd_bus_error* error) {
    auto& self = *static_cast<LoginManager*>(userData);
    const char* what = nullptr;
    const char* who = nullptr;
    const char* why = nullptr;
    const char* mode = nullptr;
    int result = sd_bus_message_read(message, "ssss", &what, &who, &why, &mode);
    if (result < 0) {
        return result;
    }
    const auto operations = parseWhat(what);
    if (!operations) {
        return sd_bus_error_setf(error, SD_BUS_ERROR_INVALID_ARGS, "Invalid lock types %s", what);
    }
    const std::string_view modeName = mode;
    if (modeName != "block" && modeName != "delay") {
        return sd_bus_error_setf(error, SD_BUS_ERROR_INVALID_ARGS, "Invalid mode %s", mode);
    }
    const auto delayable = InhibitorWhat::shutdown | InhibitorWhat::sleep;
    if (modeName == "delay" && (*operations | delayable) != delayable) {
        return sd_bus_error_set(error, SD_BUS_ERROR_INVALID_ARGS,
                                "Delay inhibitors only supported for shutdown and sleep");
    }
    if (modeName == "delay" && self.isAsleep_ && holdsAny(*operations, InhibitorWhat::sleep)) {
        return sd_bus_error_set(error, operationInProgress,
                                "The operation inhibition has been requested for is already running");
    }
    Inhibitor inhibitor{
        .what = *operations, .who = who, .why = why, .isBlock = modeName == "block", .user = 0, .process = 0};
    result = readCaller(message, inhibitor);
    if (result < 0) {
        return result;
    }
    const int descriptor = self.inhibitors_.add(std::move(inhibitor));
    if (descriptor < 0) {
        return descriptor;
    }
    result = sd_bus_reply_method_return(message, "h", descriptor);
    close(descriptor); // the reply carries its own copy
    return result;
}

int LoginManager::listInhibitors(sd_bus_message* message, void* userData, sd_bus_error*) {
    const auto& self = *static_cast<LoginManager*>(userData);
    sd_bus_message* reply = nullptr;
    int result = sd_bus_message_new_method_return(message, &reply);
    if (result >= 0) {
        result = sd_bus_message_open_container(reply, 'a', "(ssssuu)");
    }
    self.inhibitors_.forEach([&](const Inhibitor& inhibitor) {
        if (result >= 0) {
            result = sd_bus_message_append(reply, "(ssssuu)", toString(inhibitor.what).c_str(),
                                           inhibitor.who.c_str(), inhibitor.why.c_str(),
                                           inhibitor.isBlock ? "block" : "delay", inhibitor.user,
                                           static_cast<std::uint32_t>(inhibitor.process));
        }
    });
    if (result >= 0) {
        result = sd_bus_message_close_container(reply);
    }
    if (result >= 0) {
        result = sd_bus_send(nullptr, reply, nullptr);
    }
    sd_bus_message_unref(reply);
    return result;
}

int LoginManager::suspend(sd_bus_message* message, void* userData, sd_bus_error* error) {
    auto& self = *static_cast<LoginManager*>(userData);
    if (self.isAsleep_) {
        return sd_bus_error_set(error, operationInProgress,
                                "There's already a shutdown or sleep operation in progress");
    }
    const int result = self.fallAsleep("asked");
    return result < 0 ? result : sd_bus_reply_method_return(message, nullptr);
}

int LoginManager::property(sd_bus*, const char*, const char*, const char* name, sd_bus_message* reply,
                           void* userData, sd_bus_error*) {
    const auto& self = *static_cast<LoginManager*>(userData);
    const std::string_view asked = name;
    if (asked == "BlockInhibited" || asked == "DelayInhibited") {
        const auto held = self.inhibitors_.heldBy(asked == "BlockInhibited");
        return sd_bus_message_append(reply, "s", toString(held).c_str());
    }
    if (asked == "IdleAction") {
        return sd_bus_message_append(reply, "s", self.idleAction_.isSuspend ? "suspend" : "ignore");
    }
    if (asked == "LidClosed") {
        return sd_bus_message_append(reply, "b", self.isLidClosed_ ? 1 : 0);
    }
    if (asked == "Docked") {
        return sd_bus_message_append(reply, "b", self.isDocked_ ? 1 : 0);
    }
    return sd_bus_message_append(reply, "b", self.isAsleep_ ? 1 : 0);
}

int LoginManager::setLid(sd_bus_message* message, void* userData, sd_bus_error*) {
    auto& self = *static_cast<LoginManager*>(userData);
    int isClosed = 0;
    int isDocked = 0;
    int result = sd_bus_message_read(message, "bb", &isClosed, &isDocked);
    if (result < 0) {
        return result;
    }
    self.isLidClosed_ = isClosed != 0;
    self.isDocked_ = isDocked != 0;
    result = self.handleLid();
    return result < 0 ? result : sd_bus_reply_method_return(message, nullptr);
}

int LoginManager::handleLid() {
    const bool isHeld = holdsAny(inhibitors_.heldBy(true), InhibitorWhat::handleLidSwitch);
    return isLidClosed_ && !isDocked_ && !isHeld && !isAsleep_ ? fallAsleep("lid") : 0;
}

void LoginManager::inhibitorsChanged() {
    const auto blocks = inhibitors_.heldBy(true);
    if (const std::string text = toString(blocks); text != announcedBlocks_) {
        announcedBlocks_ = text;
        const int result = sd_bus_emit_properties_changed(service_.bus(), managerPath, managerInterface,
                                                          "BlockInhibited", nullptr);
        if (const auto told = outcome("Cannot tell that BlockInhibited changed", result); !told) {
            std::cerr << told.error() << '\n';
        }
    }
    if (const auto handled = outcome("Cannot handle the lid", handleLid()); !handled) {
        std::cerr << handled.error() << '\n';
    }
    const bool isIdle = !holdsAny(blocks, InhibitorWhat::idle | InhibitorWhat::sleep);
    if (isIdle != std::exchange(isIdle_, isIdle) && !isAsleep_) {
        scheduleNext();
    }
}

int LoginManager::fallAsleep(const char* reason) {
    std::cout << "suspend (" << reason << ")\n" << std::flush;
    isAsleep_ = true;
    scheduleNext();
    const int result = emitPrepareForSleep();
    if (result < 0) {
        return result;
    }
    // Without a callback no reply is asked for: a bus without a service manager is as good.
    return sd_bus_call_method_async(service_.bus(), nullptr, "org.freedesktop.systemd1",
                                    "/org/freedesktop/systemd1", "org.freedesktop.systemd1.Manager",
                                    "StartUnit", nullptr, nullptr, "ss", "suspend.target",
                                    "replace-irreversibly");
}

int LoginManager::wakeUp() {
    isAsleep_ = false;
    scheduleNext();
    return emitPrepareForSleep();
}

void LoginManager::scheduleNext() {
    int result = 0;
    if (isAsleep_ || (isIdle_ && idleAction_.isSuspend)) {
        const auto wait = isAsleep_ ? sleepTime : idleAction_.after;
        result = sd_event_source_set_time_relative(timer_.get(), static_cast<std::uint64_t>(wait.count()));
        if (result >= 0) {
            result = sd_event_source_set_enabled(timer_.get(), SD_EVENT_ONESHOT);
        }
    } else {
        result = sd_event_source_set_enabled(timer_.get(), SD_EVENT_OFF);
    }
    if (const auto armed = outcome("Cannot set the timer", result); !armed) {
        std::cerr << armed.error() << '\n';
        sd_event_exit(service_.event(), result);
    }
}

int LoginManager::timeIsUp(sd_event_source*, std::uint64_t, void* userData) {
    auto& self = *static_cast<LoginManager*>(userData);
    return self.isAsleep_ ? self.wakeUp() : self.fallAsleep("idle");
}

int LoginManager::emitPrepareForSleep() const {
    return sd_bus_emit_signal(service_.bus(), managerPath, managerInterface, "PrepareForSleep", "b",
                              isAsleep_ ? 1 : 0);
}

} // namespace wakeloft::rig
