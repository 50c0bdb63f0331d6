#pragma once

#include "session/AwakeFailure.h"
#include "session/AwakeIntentStore.h"
#include "session/Clocks.h"
#include "session/DeadlineRecheckNotifier.h"
#include "session/DeadlineScheduler.h"
#include "session/SleepBlocker.h"
#include "support/Lifetime.h"
#include "support/Observable.h"

#include <functional>
#include <optional>
#include <vector>

namespace wakeloft {

/// The keep-awake session: whether the machine is kept awake, until when, and what went wrong.
/// Main thread only. The collaborators must outlive it; ending it releases nothing.
class AwakeController {
  public:
    AwakeController(SleepBlocker& blocker, AwakeIntentStore& store, const DateProvider& dates,
                    const ContinuousTimeProvider& continuous, DeadlineScheduler& scheduler,
                    DeadlineRecheckNotifier& recheck, bool restoringPreviousState);
    AwakeController(const AwakeController&) = delete;
    AwakeController& operator=(const AwakeController&) = delete;
    ~AwakeController() = default;

    /// Ends a session that is on; otherwise starts one without a timer, also after a refused start.
    void toggle();
    /// Starts or changes the session: without a timer when nothing is given. Seconds that give no usable
    /// deadline (not finite, too far) end it.
    void turnOnFor(std::optional<Seconds> seconds);
    void turnOff();
    /// Applies a lapsed deadline at once; otherwise arms the timer anew.
    void checkExpiry();

    /// Called after every start, every stop, and when the hold is lost or taken again, in the order of
    /// registration and for the controller's whole life.
    void observeSession(std::function<void()> observer);

    /// Signals once after an operation, or an event of the system, that changed any field below.
    Signal& changed() { return changed_; }

    [[nodiscard]] bool isOn() const { return isOn_.get(); }
    [[nodiscard]] const std::optional<AwakeFailure>& lastFailure() const { return lastFailure_.get(); }
    /// The user wants a session, whether or not the blocker could be engaged.
    [[nodiscard]] bool isRequested() const { return isRequested_.get(); }
    [[nodiscard]] std::optional<Date> activeUntil() const { return activeUntil_.get(); }
    /// The earlier of the wall-clock and the continuous-clock deadline, on the wall clock.
    [[nodiscard]] std::optional<Date> endsAt() const;
    [[nodiscard]] std::optional<Seconds> remaining() const;
    /// What of the hold could not be had while it is on.
    [[nodiscard]] const std::optional<AwakeFailure>& limitation() const { return limitation_.get(); }

  private:
    void activate(std::optional<Date> deadline, bool recording);
    void engage();
    void holdChanged(const std::expected<void, Error>& hold);
    void arm(Date date);
    void tellSessionObservers();
    [[nodiscard]] std::optional<Seconds> continuousDeadline(std::optional<Date> deadline) const;

    Signal changed_;
    Observable<bool> isOn_{changed_};
    Observable<std::optional<AwakeFailure>> lastFailure_{changed_};
    Observable<bool> isRequested_{changed_};
    Observable<std::optional<Date>> activeUntil_{changed_};
    Observable<std::optional<Seconds>> activeUntilContinuous_{changed_};
    Observable<std::optional<AwakeFailure>> limitation_{changed_};
    bool isHoldLost_ = false; ///< the blocker lost a hold and may take it again by itself

    SleepBlocker& blocker_;
    AwakeIntentStore& store_;
    const DateProvider& dates_;
    const ContinuousTimeProvider& continuous_;
    DeadlineScheduler& scheduler_;
    std::vector<std::function<void()>> sessionObservers_;
    Lifetime lifetime_;
};

} // namespace wakeloft
