#pragma once

#include "support/Date.h"

#include <variant>

namespace wakeloft {

/// What a client asks of the helper, as its service handles it.
struct LidLeaseRequest {
    struct Renew {
        double until; ///< seconds since 1970; may be anything that a client sends
        bool operator==(const Renew&) const = default;
    };
    struct Revoke {
        bool operator==(const Revoke&) const = default;
    };
    /// The client went away; its answer is discarded.
    struct Disconnect {
        bool operator==(const Disconnect&) const = default;
    };
    std::variant<Renew, Revoke, Disconnect> value;

    static LidLeaseRequest renew(double until) { return {Renew{until}}; }
    static LidLeaseRequest revoke() { return {Revoke{}}; }
    static LidLeaseRequest disconnect() { return {Disconnect{}}; }

    bool operator==(const LidLeaseRequest&) const = default;
};

} // namespace wakeloft
