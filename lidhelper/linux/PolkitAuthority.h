#pragma once

#include "Bus.h"

#include <functional>
#include <map>
#include <optional>
#include <string>

namespace wakeloft {

/// Asks polkit whether a client of the bus may do an action. The client is named by its unique name, which
/// the bus vouches for; never by a process, whose number may have a new owner. Main thread.
class PolkitAuthority {
  public:
    /// Gets the reason of a refusal, or nothing; in a later turn.
    using Decided = std::function<void(std::optional<std::string> refusal)>;

    /// `bus` must outlive the authority.
    PolkitAuthority(sd_bus* bus, std::string action) : bus_(bus), action_(std::move(action)) {}

    /// Nobody is asked for a password: no answer would come in a client's time. A polkit that is not there or
    /// does not answer is a refusal.
    void check(const std::string& uniqueName, const Decided& decided);

  private:
    [[nodiscard]] BusMessage checkCall(const std::string& uniqueName) const;

    sd_bus* bus_;
    std::string action_;
    std::uint64_t lastCheck_ = 0;
    std::map<std::uint64_t, BusSlot> pending_;
};

} // namespace wakeloft
