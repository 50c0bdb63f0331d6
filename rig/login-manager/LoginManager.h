#pragma once

#include "BusService.h"
#include "Inhibitors.h"

#include <chrono>
#include <cstdint>
#include <string>

namespace wakeloft::rig {

/// What to do when nobody holds idleness up for `after`.
struct IdleAction {
    bool isSuspend = false; ///< otherwise idleness is ignored
    std::chrono::microseconds after{};
};

/// A small login manager with the real one's bus interface, for machines that allow no other. It asks nobody
/// for permission, and "sleeps" by saying so: a line on stdout, PrepareForSleep, and suspend.target where a
/// service manager is on the bus. Its lid and dock are moved by com.wakeloft.Rig.Lid.Set(b isClosed, b
/// isDocked) on the manager's object; a shut lid makes it sleep when moved, and when an inhibitor comes or
/// goes. Unlike the real one it does not wait for delaying inhibitors before it sleeps, and forgets all
/// inhibitors when it is restarted.
class LoginManager {
  public:
    LoginManager(const BusService& service, IdleAction idleAction);
    LoginManager(const LoginManager&) = delete;
    LoginManager& operator=(const LoginManager&) = delete;

    /// Puts the object on the bus and starts waiting for idleness.
    Outcome publish();

  private:
    static int inhibit(sd_bus_message* message, void* userData, sd_bus_error* error);
    static int listInhibitors(sd_bus_message* message, void* userData, sd_bus_error* error);
    static int suspend(sd_bus_message* message, void* userData, sd_bus_error* error);
    static int property(sd_bus* bus, const char* path, const char* interface, const char* name,
                        sd_bus_message* reply, void* userData, sd_bus_error* error);
    static int setLid(sd_bus_message* message, void* userData, sd_bus_error* error);
    static int timeIsUp(sd_event_source* source, std::uint64_t time, void* userData);

    void inhibitorsChanged();
    /// Sleeps if the lid is shut, away from a dock, and nobody holds that up.
    int handleLid();
    int fallAsleep(const char* reason);
    int wakeUp();
    /// Arms the one timer: the end of the sleep, or the moment at which the machine has been idle for long
    /// enough.
    void scheduleNext();
    int emitPrepareForSleep() const;

    const BusService& service_;
    IdleAction idleAction_;
    Inhibitors inhibitors_;
    std::string announcedBlocks_;
    bool isIdle_ = false;
    bool isAsleep_ = false;
    bool isLidClosed_ = false;
    bool isDocked_ = false;
    EventSource timer_;
};

} // namespace wakeloft::rig
