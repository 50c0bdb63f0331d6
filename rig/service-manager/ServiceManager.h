#pragma once

#include "BusService.h"

#include <cstdint>
#include <map>
#include <string>

namespace wakeloft::rig {

/// What a login manager and the lid helper ask of the first process: is a unit loaded (always), is it masked
/// (never), and start it. Starting does nothing but print "StartUnit <unit> <mode>" on stdout; the job is
/// reported as done after 0.3 s.
class ServiceManager {
  public:
    explicit ServiceManager(const BusService& service) : service_(service) {}
    ServiceManager(const ServiceManager&) = delete;
    ServiceManager& operator=(const ServiceManager&) = delete;

    /// Puts the objects on the bus. They must not outlive this.
    Outcome publish();

  private:
    struct Job {
        ServiceManager* manager = nullptr;
        std::uint32_t id = 0;
        std::string unit;
        EventSource timer;
    };

    static int startUnit(sd_bus_message* message, void* userData, sd_bus_error* error);
    static int jobIsDone(sd_event_source* source, std::uint64_t time, void* userData);

    const BusService& service_;
    std::map<std::uint32_t, Job> jobs_;
    std::uint32_t lastJob_ = 0;
};

} // namespace wakeloft::rig
