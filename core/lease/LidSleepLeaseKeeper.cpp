#include "lease/LidSleepLeaseKeeper.h"

#include <algorithm>

namespace wakeloft {

LidSleepLeaseKeeper::LidSleepLeaseKeeper(SystemSleepSetting& setting, const DateProvider& dates,
                                         const UptimeProvider& uptime)
    : setting_(setting), dates_(dates), uptime_(uptime) {
    write(false, Insistence::spaced);
}

std::optional<LidLeaseTerm> LidSleepLeaseKeeper::termUntil(Date end) const {
    const Date now = dates_.now();
    if (!(end > now)) // also a NaN
        return std::nullopt;
    const Date expiry = std::min(end, LidSleepLease::expiryRenewedAt(now));
    return LidLeaseTerm{expiry, uptime_.uptime() + (expiry - now)};
}

bool LidSleepLeaseKeeper::hasLapsed(const LidLeaseTerm& term) const {
    return dates_.now() >= term.expiry || term.uptimeExpiry <= uptime_.uptime();
}

void LidSleepLeaseKeeper::hold(const LidLeaseTerm& term) {
    leaseExpiry_ = term.expiry;
    leaseUptimeExpiry_ = term.uptimeExpiry;
    write(true, Insistence::spaced);
}

void LidSleepLeaseKeeper::renewUntil(Date end) {
    if (const auto term = termUntil(end))
        hold(*term);
    else
        revoke();
}

void LidSleepLeaseKeeper::revoke() {
    forgetLease();
    write(false, Insistence::spaced);
}

void LidSleepLeaseKeeper::checkLease() {
    if (!leaseExpiry_ || !leaseUptimeExpiry_) {
        write(false, Insistence::spaced);
    } else if (hasLapsed({*leaseExpiry_, *leaseUptimeExpiry_})) {
        forgetLease();
        write(false, Insistence::spaced);
    } else {
        write(true, Insistence::spaced);
    }
}

SleepSettingStanding LidSleepLeaseKeeper::readStanding() {
    using Standing = SleepSettingStanding;
    if (lastError_ || !written_)
        return {Standing::AsWritten{}}; // its own write is under way
    const auto isDisabled = setting_.readDisabled();
    if (!isDisabled) {
        // A failed read is no reason to end what this helper holds itself.
        if (*written_)
            return {Standing::AsWritten{}};
        return {Standing::Unread{isDisabled.error().description}};
    }
    if (!*isDisabled && *written_) {
        forgetLease();
        written_ = false; // adopted, so it is not written once more
        return {Standing::OffElsewhere{}};
    }
    if (*isDisabled && !*written_)
        return {Standing::OnElsewhere{}};
    return {Standing::AsWritten{}};
}

bool LidSleepLeaseKeeper::revokeBeforeExit(const std::function<bool()>& stop,
                                           const std::function<void()>& pause) {
    forgetLease();
    write(false, Insistence::evenIfJustFailed);
    while (lastError_) {
        if (stop())
            return false;
        pause();
        forgetLease();
        if (written_ == false && !lastError_)
            return true;
        writeNow(false);
    }
    return true;
}

std::optional<Seconds> LidSleepLeaseKeeper::retryAt() const {
    return failed_ ? std::optional(failed_->at + LidSleepLease::retrySpacing) : std::nullopt;
}

void LidSleepLeaseKeeper::write(bool disabled, Insistence insistence) {
    if (written_ == disabled && !lastError_)
        return;
    const bool hasJustFailed = failed_ && failed_->disabled == disabled &&
                               uptime_.uptime() - failed_->at < LidSleepLease::retrySpacing;
    if (hasJustFailed && insistence == Insistence::spaced)
        return;
    writeNow(disabled);
}

void LidSleepLeaseKeeper::writeNow(bool disabled) {
    const auto result = setting_.writeDisabled(disabled);
    if (result) {
        written_ = disabled;
        lastError_.reset();
        failed_.reset();
    } else {
        lastError_ = result.error();
        failed_ = {disabled, uptime_.uptime()};
    }
}

void LidSleepLeaseKeeper::forgetLease() {
    leaseExpiry_.reset();
    leaseUptimeExpiry_.reset();
}

} // namespace wakeloft
