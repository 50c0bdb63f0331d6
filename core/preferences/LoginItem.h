#pragma once

#include "support/Error.h"

#include <cstdint>
#include <expected>

namespace wakeloft {

/// How the app stands with what opens programs at login.
enum class LoginItemState : std::uint8_t {
    enabled,
    disabled,
    requiresApproval ///< registered, but the user has to allow it in the system's settings
};

/// Opening the app at login, as the system has it. Main thread.
class LoginItem {
  public:
    virtual ~LoginItem() = default;

    [[nodiscard]] virtual LoginItemState state() const = 0;
    /// The app runs from where installed programs are, so that a registration will keep pointing at it.
    [[nodiscard]] virtual bool isAtStableLocation() const = 0;
    /// Asks the system to open the app at login. What it led to is `state()`'s to say.
    virtual std::expected<void, Error> registerItem() = 0;
    virtual std::expected<void, Error> unregisterItem() = 0;
};

/// For previews and tests.
class InMemoryLoginItem final : public LoginItem {
  public:
    InMemoryLoginItem(LoginItemState initial, bool stable) : current(initial), isStable(stable) {}

    [[nodiscard]] LoginItemState state() const override { return current; }
    [[nodiscard]] bool isAtStableLocation() const override { return isStable; }
    std::expected<void, Error> registerItem() override;
    std::expected<void, Error> unregisterItem() override;

    LoginItemState current;
    bool isStable;
};

} // namespace wakeloft
