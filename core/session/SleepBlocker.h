#pragma once

#include "support/Error.h"

#include <expected>
#include <functional>
#include <optional>

namespace wakeloft {

/// Holds off idle sleep. The one place where a session touches the operating system. Main thread.
class SleepBlocker {
  public:
    virtual ~SleepBlocker() = default;

    /// Holds the assertion; does nothing when it is held already.
    virtual std::expected<void, Error> engage() = 0;
    /// Lets it go; does nothing when none is held.
    virtual void release() = 0;
    [[nodiscard]] virtual bool isEngaged() const = 0;

    /// What of the assertion could not be had although it is held, in words for the user; empty when all is
    /// well.
    [[nodiscard]] virtual std::optional<Error> limitation() const { return std::nullopt; }

    /// `changed` is told when a hold changes by itself between `engage()` and `release()`: an error when it
    /// was lost, a value when it was taken again or its limitation changed. Only the latest observer is told.
    /// A blocker whose holds cannot be taken away never tells.
    virtual void observeHold(std::function<void(std::expected<void, Error>)> changed) {
        static_cast<void>(changed);
    }
};

} // namespace wakeloft
