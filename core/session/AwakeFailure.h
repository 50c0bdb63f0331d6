#pragma once

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
    /// Any other error, in its own words.
    struct Reported {
        std::string message;
        bool operator==(const Reported&) const = default;
    };
    std::variant<AssertionRefused, Reported> value;

    /// Total: every error gives a failure.
    explicit AwakeFailure(const Error& error);

    bool operator==(const AwakeFailure&) const = default;
};

} // namespace wakeloft
