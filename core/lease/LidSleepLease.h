#pragma once

#include "support/Date.h"

namespace wakeloft {

/// The timing of leases, shared by the app and the helper. All in seconds.
struct LidSleepLease {
    static constexpr Seconds duration = 30;        ///< the most that one renewal grants
    static constexpr Seconds renewalInterval = 10; ///< how often a client renews
    static constexpr Seconds replyTimeout = 2;     ///< how long a client waits for an answer
    static constexpr Seconds writeTimeout = 1;     ///< the limit on one write of the setting
    static constexpr Seconds readTimeout = 0.25;   ///< the limit on one read of the setting
    static constexpr Seconds retrySpacing =
        0.25; ///< between two attempts to write the same value after a failure

    static constexpr Date expiryRenewedAt(Date date) { return date + duration; }
};

/// A lease's end, on the wall clock and in uptime: it is over as soon as either is reached.
struct LidLeaseTerm {
    Date expiry;
    Seconds uptimeExpiry = 0;

    bool operator==(const LidLeaseTerm&) const = default;
};

} // namespace wakeloft
