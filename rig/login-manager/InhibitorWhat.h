#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace wakeloft::rig {

/// A set of operations that an inhibitor holds up, one bit each, in the order in which they are written.
enum class InhibitorWhat : unsigned {
    none = 0,
    shutdown = 1U << 0U,
    sleep = 1U << 1U,
    idle = 1U << 2U,
    handlePowerKey = 1U << 3U,
    handleSuspendKey = 1U << 4U,
    handleHibernateKey = 1U << 5U,
    handleLidSwitch = 1U << 6U,
    handleRebootKey = 1U << 7U,
};

InhibitorWhat operator|(InhibitorWhat left, InhibitorWhat right);

/// Does `set` hold any operation of `operations`?
bool holdsAny(InhibitorWhat set, InhibitorWhat operations);

/// Reads names joined by ':', at least one; nothing when one is unknown.
std::optional<InhibitorWhat> parseWhat(std::string_view text);

/// The names in their own order, joined by ':'.
std::string toString(InhibitorWhat set);

} // namespace wakeloft::rig
