#pragma once

#include "support/FakeService.h"

#include <atomic>
#include <memory>
#include <string>

namespace wakeloft {

/// A service of the desktop session that can be asked to hold off sleep, on a thread and a connection of its
/// own, so that blocking calls to it are answered. Ending it is leaving the bus, as in a crash.
class FakeInhibitService {
  public:
    enum class Dialect { sessionManager, powerManagement };

    struct Manners {
        bool refuses = false;
        int answersAfterMs = 0;
    };

    FakeInhibitService(const PrivateBus& bus, Dialect dialect, Manners manners = {false, 0});
    FakeInhibitService(const FakeInhibitService&) = delete;
    FakeInhibitService& operator=(const FakeInhibitService&) = delete;
    ~FakeInhibitService() = default;

    static const char* nameOf(Dialect dialect);

    /// How many inhibitors it honours now.
    [[nodiscard]] int held() const { return held_; }
    /// How many it has granted so far.
    [[nodiscard]] int granted() const { return granted_; }
    /// Of the latest request: the flags of a session manager, the application's name and reason.
    [[nodiscard]] std::string latestRequest() const { return latest_; }

  private:
    static int inhibit(sd_bus_message* message, void* userdata, sd_bus_error* error);
    static int uninhibit(sd_bus_message* message, void* userdata, sd_bus_error* error);
    std::shared_ptr<sd_bus> serve(const PrivateBus& bus, sd_event* event);

    Dialect dialect_;
    Manners manners_;
    std::atomic<int> held_ = 0;
    std::atomic<int> granted_ = 0;
    std::string latest_; ///< written before the reply is sent, read after it has come
    ServiceThread thread_;
};

} // namespace wakeloft
