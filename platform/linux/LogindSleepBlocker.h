#pragma once

#include "LoginManagerInhibitor.h"
#include "SessionInhibitor.h"
#include "session/SleepBlocker.h"

namespace wakeloft {

/// Holds off idle sleep on Linux by two independent inhibitors: the desktop session's, where there is such a
/// service, and the login manager's `idle` block. Never `sleep`, never `handle-lid-switch`: closing the lid
/// still sleeps. Where a session service exists it is the one that counts, else the login manager; the other
/// failing is a limitation. Under KDE the login manager is left out while its own idle action is "ignore",
/// since there its inhibitor would only keep the screen on. Main thread; `engage()` waits for one bus call a
/// service.
class LogindSleepBlocker final : public SleepBlocker {
  public:
    /// `sessionBus` may be null; both buses must outlive the blocker. `who` and `why` stand in the listings.
    /// `nothing` is the sentence, before the system's own words, for a computer where neither can be had.
    LogindSleepBlocker(sd_bus* sessionBus, BusConnection& systemBus, const std::string& who,
                       const std::string& why,
                       std::string nothing = "Nothing on this computer lets Wakeloft hold off sleep.");

    std::expected<void, Error> engage() override;
    void release() override;
    [[nodiscard]] bool isEngaged() const override { return isWanted_ && judge().has_value(); }
    [[nodiscard]] std::optional<Error> limitation() const override;
    void observeHold(std::function<void(std::expected<void, Error>)> changed) override;

  private:
    [[nodiscard]] bool isLoginManagerWanted();
    [[nodiscard]] std::expected<void, PlatformError> judge() const;
    void holdChanged();

    std::string nothing_;
    bool isWanted_ = false;
    std::expected<void, PlatformError> told_;
    std::optional<Error> toldLimitation_;
    std::function<void(std::expected<void, Error>)> changed_;
    SessionInhibitor session_;
    LoginManagerInhibitor loginManager_;
};

} // namespace wakeloft
