#pragma once

#include "support/Date.h"
#include "support/Error.h"

#include <expected>
#include <functional>
#include <optional>

namespace wakeloft {

/// Everything that Deepwake needs from the privileged helper. Main thread, where completions run too; they
/// may run before the call returns.
class LidSleepBlocker {
  public:
    /// Gets nothing where the helper confirmed what was asked.
    using Completion = std::function<void(std::optional<Error>)>;

    virtual ~LidSleepBlocker() = default;

    /// Makes sure that the helper can be reached.
    virtual std::expected<void, Error> prepare() { return {}; }
    /// Asks for the lease to last until `date`.
    virtual void renewUntil(Date date, Completion completion) = 0;
    /// Asks for the lease to end and the sleep setting to be put back; confirmed also where nothing needed
    /// doing.
    virtual void revoke(Completion completion) = 0;
    /// The latest renewal was confirmed and nothing was revoked since.
    [[nodiscard]] virtual bool isEngaged() const = 0;
};

} // namespace wakeloft
