#pragma once

#include "Bus.h"

#include <functional>
#include <map>
#include <optional>
#include <string>

namespace wakeloft {

/// Asks polkit whether clients of the bus may do an action. Main thread.
class PolkitAuthority {
  public:
    /// Gets the reason of a refusal, or nothing; in a later turn.
    using Decided = std::function<void(std::optional<std::string> refusal)>;

    /// `bus` must outlive the authority.
    PolkitAuthority(sd_bus* bus, std::string action) : bus_(bus), action_(std::move(action)) {}

    /// A polkit that is not there or does not answer is a refusal.
    void check(const std::string& uniqueName, const Decided& decided);

  private:
    sd_bus* bus_;
    std::string action_;
    std::uint64_t lastCheck_ = 0;
    std::map<std::uint64_t, BusSlot> pending_;
};

} // namespace wakeloft
