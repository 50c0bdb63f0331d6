#pragma once

#include "Bus.h"
#include "support/ChildProcess.h"

#include <filesystem>
#include <functional>
#include <memory>
#include <string>

namespace wakeloft {

/// A message bus of the test's own in a temporary directory; it ends, and the directory goes, with this
/// object. A failure to start or to connect fails the running test.
class PrivateBus {
  public:
    PrivateBus();
    ~PrivateBus();
    PrivateBus(const PrivateBus&) = delete;
    PrivateBus& operator=(const PrivateBus&) = delete;

    /// As in DBUS_SESSION_BUS_ADDRESS.
    const std::string& address() const { return address_; }

    /// A directory that goes with the bus. It takes services that the bus is to start on demand, as
    /// `*.service`.
    const std::filesystem::path& directory() const { return directory_; }

    /// A new connection, attached to `event`. Null after a failure.
    BusPointer connect(sd_event* event) const;

  private:
    std::filesystem::path directory_;
    std::string address_;
    std::unique_ptr<ChildProcess> daemon_;
};

/// A new connection to the bus at `address`, attached to `event`. Null after a failure, which fails the
/// running test.
BusPointer connectToBus(const std::string& address, sd_event* event);

/// Runs the loop until `condition` holds, at most `timeoutMs`. Returns whether it came to hold.
bool runUntil(sd_event* event, const std::function<bool()>& condition, int timeoutMs);

} // namespace wakeloft
