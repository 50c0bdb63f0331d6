#pragma once

#include "lease/LidSleepLease.h"
#include "lease/SystemSleepSetting.h"
#include "session/Clocks.h"

#include <functional>
#include <optional>
#include <string>
#include <variant>

namespace wakeloft {

/// How the setting stands compared with what this helper last wrote.
struct SleepSettingStanding {
    struct Unread {
        std::string detail;
        bool operator==(const Unread&) const = default;
    };
    /// As written, or there is nothing to compare.
    struct AsWritten {
        bool operator==(const AsWritten&) const = default;
    };
    struct OnElsewhere {
        bool operator==(const OnElsewhere&) const = default;
    };
    struct OffElsewhere {
        bool operator==(const OffElsewhere&) const = default;
    };
    std::variant<Unread, AsWritten, OnElsewhere, OffElsewhere> value;

    bool operator==(const SleepSettingStanding&) const = default;
};

/// The one owner of the sleep setting: it is on only while a lease is held and has not lapsed, and is put
/// back when that ends, however often it takes. Passive: whoever drives it calls `checkLease()` when the
/// lease ends on either clock and at `retryAt()`. Main thread.
class LidSleepLeaseKeeper {
  public:
    /// Puts the setting back at once, whatever a helper before this one left. All must outlive the keeper.
    LidSleepLeaseKeeper(SystemSleepSetting& setting, const DateProvider& dates, const UptimeProvider& uptime);

    /// What is granted to a client that asks for `end`: at most thirty seconds, nothing for an end that is
    /// not ahead.
    [[nodiscard]] std::optional<LidLeaseTerm> termUntil(Date end) const;
    [[nodiscard]] bool hasLapsed(const LidLeaseTerm& term) const;

    void hold(const LidLeaseTerm& term);
    void renewUntil(Date end);
    void revoke();
    void checkLease();

    /// Reads the setting. Finding it turned off by something else ends the lease and adopts that.
    SleepSettingStanding readStanding();

    /// Lets the lease go and insists on putting the setting back: tries, and while `stop` says no, pauses and
    /// tries again. Whether it was put back.
    bool revokeBeforeExit(const std::function<bool()>& stop, const std::function<void()>& pause);

    [[nodiscard]] bool isSleepDisabled() const { return written_ == true; }
    [[nodiscard]] std::optional<Date> leaseExpiry() const { return leaseExpiry_; }
    [[nodiscard]] std::optional<Seconds> leaseUptimeExpiry() const { return leaseUptimeExpiry_; }
    /// Why the latest write failed; empty after one that worked.
    [[nodiscard]] const std::optional<PlatformError>& lastError() const { return lastError_; }
    /// The uptime before which a failed write is not tried again.
    [[nodiscard]] std::optional<Seconds> retryAt() const;

  private:
    struct FailedWrite {
        bool disabled;
        Seconds at; ///< uptime
    };
    enum class Insistence { spaced, evenIfJustFailed };

    void write(bool disabled, Insistence insistence);
    void writeNow(bool disabled);
    void forgetLease();

    std::optional<Date> leaseExpiry_;
    std::optional<Seconds> leaseUptimeExpiry_;
    std::optional<bool> written_;
    std::optional<PlatformError> lastError_;
    std::optional<FailedWrite> failed_;
    SystemSleepSetting& setting_;
    const DateProvider& dates_;
    const UptimeProvider& uptime_;
};

} // namespace wakeloft
