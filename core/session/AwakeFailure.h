#pragma once

#include "lease/LidHelperRefusal.h"
#include "support/Error.h"

#include <cstdint>
#include <string>
#include <variant>

namespace wakeloft {

/// Why keeping the machine awake failed, as the controllers keep it and the panel words it.
struct AwakeFailure {
    struct AssertionRefused {
        std::int32_t code;
        bool operator==(const AssertionRefused&) const = default;
    };
    struct LidHelperRefused {
        LidHelperRefusal refusal;
        bool operator==(const LidHelperRefused&) const = default;
    };
    /// Any other error, in its own words.
    struct Reported {
        std::string message;
        bool operator==(const Reported&) const = default;
    };
    struct LidHelperUnavailable {
        bool operator==(const LidHelperUnavailable&) const = default;
    };
    struct LidHelperRequiresApproval {
        bool operator==(const LidHelperRequiresApproval&) const = default;
    };
    using Value = std::variant<AssertionRefused, LidHelperRefused, Reported, LidHelperUnavailable,
                               LidHelperRequiresApproval>;
    Value value;

    /// Total: every error gives a failure.
    explicit AwakeFailure(const Error& error);

    bool operator==(const AwakeFailure&) const = default;
};

} // namespace wakeloft
