#include "ServiceManager.h"

#include <array>
#include <ctime>
#include <iostream>

namespace wakeloft::rig {
namespace {

constexpr const char* managerPath = "/org/freedesktop/systemd1";
constexpr const char* managerInterface = "org.freedesktop.systemd1.Manager";
constexpr std::uint64_t jobMicroseconds = 300'000;

std::string pathOf(std::uint32_t job) {
    return std::string(managerPath) + "/job/" + std::to_string(job);
}

int subscribe(sd_bus_message* message, void*, sd_bus_error*) {
    return sd_bus_reply_method_return(message, nullptr);
}

int unitFileState(sd_bus_message* message, void*, sd_bus_error*) {
    return sd_bus_reply_method_return(message, "s", "static");
}

int loadState(sd_bus*, const char*, const char*, const char*, sd_bus_message* reply, void*, sd_bus_error*) {
    return sd_bus_message_append(reply, "s", "loaded");
}

} // namespace

Outcome ServiceManager::publish() {
    static const std::array managerTable = {
        sd_bus_vtable SD_BUS_VTABLE_START(0),
        sd_bus_vtable SD_BUS_METHOD("Subscribe", "", "", subscribe, SD_BUS_VTABLE_UNPRIVILEGED),
        sd_bus_vtable SD_BUS_METHOD("StartUnit", "ss", "o", startUnit, SD_BUS_VTABLE_UNPRIVILEGED),
        sd_bus_vtable SD_BUS_METHOD("GetUnitFileState", "s", "s", unitFileState, SD_BUS_VTABLE_UNPRIVILEGED),
        sd_bus_vtable SD_BUS_SIGNAL("JobRemoved", "uoss", 0),
        sd_bus_vtable SD_BUS_VTABLE_END,
    };
    static const std::array unitTable = {
        sd_bus_vtable SD_BUS_VTABLE_START(0),
        sd_bus_vtable SD_BUS_PROPERTY("LoadState", "s", loadState, 0, 0),
        sd_bus_vtable SD_BUS_VTABLE_END,
    };
    int result = sd_bus_add_object_vtable(service_.bus(), nullptr, managerPath, managerInterface,
                                          managerTable.data(), this);
    if (result >= 0) {
        result = sd_bus_add_fallback_vtable(service_.bus(), nullptr, "/org/freedesktop/systemd1/unit",
                                            "org.freedesktop.systemd1.Unit", unitTable.data(), nullptr, this);
    }
    return outcome("Cannot publish the service manager", result);
}

int ServiceManager::startUnit(sd_bus_message* message, void* userData, sd_bus_error*) {
    auto& self = *static_cast<ServiceManager*>(userData);
    const char* unit = nullptr;
    const char* mode = nullptr;
    int result = sd_bus_message_read(message, "ss", &unit, &mode);
    if (result < 0) {
        return result;
    }
    std::cout << "StartUnit " << unit << ' ' << mode << '\n' << std::flush;
    const std::uint32_t id = ++self.lastJob_;
    Job& job = self.jobs_[id];
    job = {.manager = &self, .id = id, .unit = unit, .timer = nullptr};
    sd_event_source* timer = nullptr;
    result = sd_event_add_time_relative(self.service_.event(), &timer, CLOCK_MONOTONIC, jobMicroseconds, 1000,
                                        jobIsDone, &job);
    job.timer.reset(timer);
    if (result < 0) {
        self.jobs_.erase(id);
        return result;
    }
    return sd_bus_reply_method_return(message, "o", pathOf(id).c_str());
}

int ServiceManager::jobIsDone(sd_event_source*, std::uint64_t, void* userData) {
    auto& job = *static_cast<Job*>(userData);
    ServiceManager& self = *job.manager;
    const int result = sd_bus_emit_signal(self.service_.bus(), managerPath, managerInterface, "JobRemoved",
                                          "uoss", job.id, pathOf(job.id).c_str(), job.unit.c_str(), "done");
    self.jobs_.erase(job.id);
    return result;
}

} // namespace wakeloft::rig
