#pragma once

#include "BusConnection.h"

#include <functional>
#include <optional>
#include <string>

namespace wakeloft {

/// A service's yes-or-no property as it was told last. Asked without waiting, and without starting the
/// service. Main thread.
class BusFlag {
  public:
    struct Address {
        const char* service;
        const char* path;
        const char* interface;
        const char* property;
    };

    /// `changed` is told, in a later turn, of each answer that differs from the one before; `trouble` of a
    /// service that is there but does not tell, not twice running. `systemBus` must outlive the flag.
    BusFlag(BusConnection& systemBus, const Address& address, std::function<void()> changed,
            std::function<void(const PlatformError&)> trouble);

    void ask();
    /// As if it had never been told.
    void forget();
    /// Nothing before the first answer, and when nobody told.
    [[nodiscard]] std::optional<bool> value() const { return value_; }

  private:
    void answered(sd_bus_message* reply);
    void fail(const PlatformError& error);
    void set(std::optional<bool> value);

    BusConnection& systemBus_;
    Address address_;
    std::function<void()> changed_;
    std::function<void(const PlatformError&)> trouble_;
    std::optional<bool> value_;
    std::string latestTrouble_;
    BusSlot pending_;
    bool isAskedAgain_ = false; ///< while one question is on its way
};

} // namespace wakeloft
