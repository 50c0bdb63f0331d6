#pragma once

#include "support/Date.h"

#include <optional>
#include <variant>

namespace wakeloft {

/// What the user asked for.
struct AwakeIntent {
    struct Until {
        Date date;
        bool operator==(const Until&) const = default;
    };
    struct Off {
        bool operator==(const Off&) const = default;
    };
    struct Indefinite {
        bool operator==(const Indefinite&) const = default;
    };
    std::variant<Until, Off, Indefinite> value = Off{};

    static AwakeIntent until(Date date) { return {Until{date}}; }
    static AwakeIntent off() { return {Off{}}; }
    static AwakeIntent indefinite() { return {Indefinite{}}; }

    /// Finite and not later than the distant future; false for NaN.
    static bool isUsable(Date date);

    /// The moment `seconds` after `now`; nothing where that is not usable as a deadline.
    static std::optional<Date> deadlineAfter(Seconds seconds, Date now);

    bool operator==(const AwakeIntent&) const = default;
};

/// What a store hands back.
struct StoredAwakeIntent {
    /// A session was requested, but its saved deadline cannot be used.
    struct UnreadableDeadline {
        bool operator==(const UnreadableDeadline&) const = default;
    };
    std::variant<AwakeIntent, UnreadableDeadline> value;

    static StoredAwakeIntent intent(AwakeIntent intent) { return {intent}; }
    static StoredAwakeIntent unreadableDeadline() { return {UnreadableDeadline{}}; }

    /// The date of a readable timed request.
    [[nodiscard]] std::optional<Date> deadline() const;

    bool operator==(const StoredAwakeIntent&) const = default;
};

} // namespace wakeloft
