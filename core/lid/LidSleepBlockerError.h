#pragma once

#include <string>
#include <variant>

namespace wakeloft {

/// Why a lease was not confirmed.
struct LidSleepBlockerError {
    /// The helper answered with a refusal, told in its own text.
    struct HelperRefused {
        std::string reason;
        bool operator==(const HelperRefused&) const = default;
    };
    /// The helper could not be reached, did not answer in time, or cannot be identified.
    struct HelperUnavailable {
        bool operator==(const HelperUnavailable&) const = default;
    };
    /// The helper is registered, but the user has not allowed it yet.
    struct HelperRequiresApproval {
        bool operator==(const HelperRequiresApproval&) const = default;
    };
    std::variant<HelperRefused, HelperUnavailable, HelperRequiresApproval> value;

    static LidSleepBlockerError helperRefused(std::string reason) {
        return {HelperRefused{std::move(reason)}};
    }
    static LidSleepBlockerError helperUnavailable() { return {HelperUnavailable{}}; }
    static LidSleepBlockerError helperRequiresApproval() { return {HelperRequiresApproval{}}; }

    bool operator==(const LidSleepBlockerError&) const = default;
};

} // namespace wakeloft
