#pragma once

#include "support/Error.h"

#include <cstdint>
#include <expected>

namespace wakeloft {

/// How the helper stands with the system.
enum class LidHelperStatus : std::uint8_t { enabled, requiresApproval, notRegistered, notFound };

/// Registers the helper with the system. Main thread.
class LidHelperRegistration {
  public:
    virtual ~LidHelperRegistration() = default;

    [[nodiscard]] virtual LidHelperStatus status() const = 0;
    /// Fails with the system's own error. What it led to is `status()`'s to say.
    virtual std::expected<void, Error> registerHelper() = 0;
};

} // namespace wakeloft
