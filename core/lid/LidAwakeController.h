#pragma once

#include "lid/LidAwakeStore.h"
#include "lid/LidSleepBlocker.h"
#include "lid/MachineConditions.h"
#include "session/AwakeController.h"

#include <array>
#include <cstdint>
#include <functional>
#include <optional>
#include <vector>

namespace wakeloft {

/// Why Deepwake does not turn on before anything was tried.
struct LidAwakeRefusal {
    enum Case : std::uint8_t { unacknowledged /**< the heat warning */ };
    static constexpr std::array<Case, 1> all = {unacknowledged};
};

/// Deepwake: an awake session that also lasts while the lid is closed. It starts or joins such a session,
/// ends with it, and meanwhile renews a short lease from the helper.
/// Main thread only. The collaborators must outlive it; ending it gives nothing back.
class LidAwakeController {
  public:
    /// `scheduler` times the renewals, `deadlineScheduler` the session's end.
    LidAwakeController(AwakeController& awake, LidSleepBlocker& blocker, LidAwakeStore& store,
                       const MachineConditions& conditions, MachineConditionsNotifier& conditionsNotifier,
                       const DateProvider& dates, DeadlineScheduler& scheduler,
                       DeadlineScheduler& deadlineScheduler);
    LidAwakeController(const LidAwakeController&) = delete;
    LidAwakeController& operator=(const LidAwakeController&) = delete;
    ~LidAwakeController() = default;

    /// With a new session, also when one is on; without a timer when nothing is given.
    /// False when it was refused or failed; a failure is then in `lastFailure()`.
    bool turnOnFor(std::optional<Seconds> seconds);
    /// With the session that is on, or with a new one.
    bool turnOnJoiningSessionOr(std::optional<Seconds> seconds);
    /// Leaves the session on.
    void turnOff();

    void acknowledgeHeatWarning();
    /// Reads the store and the machine's conditions again.
    void refresh();
    /// Brings the lease in line with the session, and tries again to give back a lease whose end was not
    /// confirmed.
    void checkLease();

    /// Every request to the helper has been answered. Changes of this are not signalled.
    [[nodiscard]] bool isSettled() const { return unanswered_ == 0; }
    /// Runs `action` once, as soon as everything is settled, which may be now.
    void whenSettled(std::function<void()> action);

    /// Signals once after an operation, an answer or an event of the system that changed any field below.
    Signal& changed() { return changed_; }

    /// The lease is confirmed.
    [[nodiscard]] bool isOn() const { return isOn_.get(); }
    /// The first renewal has not been answered yet.
    [[nodiscard]] bool isTurningOn() const { return isTurningOn_.get(); }
    /// Why the lease could not be given back, or else why the last start or renewal failed.
    [[nodiscard]] const std::optional<AwakeFailure>& lastFailure() const;
    [[nodiscard]] bool hasAcknowledgedHeatWarning() const { return hasAcknowledgedHeatWarning_.get(); }
    [[nodiscard]] MachineConditionsSnapshot machineConditions() const { return machineConditions_.get(); }
    [[nodiscard]] std::optional<LidAwakeRefusal::Case> refusal() const;
    [[nodiscard]] LidClosePrecaution::Case precaution() const;
    /// The session's; its own signal tells of changes.
    [[nodiscard]] std::optional<Date> activeUntil() const { return awake_.activeUntil(); }

  private:
    enum class Session { started, joined };

    bool start(std::optional<Seconds> seconds, Session session);
    void failStart(const std::optional<AwakeFailure>& failure);
    void renewLease();
    void renewed(const std::optional<Error>& error, int switchOffs);
    void giveBack();
    void gaveBack(const std::optional<Error>& error);
    [[nodiscard]] std::vector<std::function<void()>> answered();
    void armDeadline();
    void deadlineReached();
    void refreshConditions();
    [[nodiscard]] bool isWanted() const { return isOn() || isTurningOn(); }

    Signal changed_;
    Observable<bool> isOn_{changed_};
    Observable<bool> isTurningOn_{changed_};
    Observable<std::optional<AwakeFailure>> startFailure_{changed_};
    /// Why the last attempt to give the lease back was not confirmed: the machine may still be kept awake.
    Observable<std::optional<AwakeFailure>> unconfirmedReset_{changed_};
    int switchOffs_ = 0; ///< so far; tells an answer that came too late
    bool isRenewing_ = false;
    int givingBack_ = 0; ///< revokes on their way
    int unanswered_ = 0; ///< requests on their way
    std::vector<std::function<void()>> settledWaiters_;
    Observable<bool> hasAcknowledgedHeatWarning_;
    Observable<MachineConditionsSnapshot> machineConditions_;

    AwakeController& awake_;
    LidSleepBlocker& blocker_;
    LidAwakeStore& store_;
    const MachineConditions& machine_;
    const DateProvider& dates_;
    DeadlineScheduler& scheduler_;
    DeadlineScheduler& deadlineScheduler_;
    Lifetime lifetime_;
};

} // namespace wakeloft
