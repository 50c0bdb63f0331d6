#pragma once

#include "Bus.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace wakeloft {

/// Keeps an object registered with the tray's watcher (org.kde.StatusNotifierWatcher): with the one that is
/// there, one that comes late, and each that takes its place. Never starts one. Calls back from within bus
/// handlers, and must not be ended there. Main thread.
class TrayHost {
  public:
    struct Events {
        /// Does a host show the object now: a watcher accepted it, and says that it has a host. Told on each
        /// change, and at the start as soon as it is known.
        std::function<void(bool isHosted)> changed;
        /// A watcher refused the object, or the bus failed.
        std::function<void(PlatformError)> failed;
    };

    /// `bus` must outlive the result. `objectPath` is an object of this connection.
    static std::expected<std::unique_ptr<TrayHost>, PlatformError> create(sd_bus* bus, std::string objectPath,
                                                                          Events events);
    TrayHost(const TrayHost&) = delete;
    TrayHost& operator=(const TrayHost&) = delete;
    ~TrayHost() = default;

  private:
    TrayHost(sd_bus* bus, std::string objectPath, Events events);
    std::optional<PlatformError> follow();
    void ownerIs(std::string owner);
    int registerObject();
    void readHostPresence();
    void setHosted(bool isHosted);

    static int ownerFound(sd_bus_message* reply, void* userdata, sd_bus_error*);
    static int registered(sd_bus_message* reply, void* userdata, sd_bus_error*);
    static int hostPresenceChanged(sd_bus_message* signal, void* userdata, sd_bus_error*);
    static int hostPresenceRead(sd_bus_message* reply, void* userdata, sd_bus_error*);

    sd_bus* bus_;
    std::string objectPath_;
    Events events_;
    std::string owner_; ///< the watcher's unique name, empty while there is none
    bool isRegistered_ = false;
    std::optional<bool> toldHosted_;
    BusSlot ownerChanges_;
    BusSlot ownerQuery_;
    BusSlot hostComes_;
    BusSlot hostGoes_;
    BusSlot registration_;
    BusSlot presenceQuery_;
};

} // namespace wakeloft
