#pragma once

#include "lease/LidLeaseService.h"
#include "lid/LidHelperFileWatch.h"

#include <functional>
#include <optional>
#include <string>

namespace wakeloft {

/// One pending one-shot timer at the most. Main thread, where the action runs too.
class OneShotTimer {
  public:
    virtual ~OneShotTimer() = default;

    /// Replaces any pending one. The time asleep counts, so that it never fires later than either clock's
    /// end.
    virtual void arm(Seconds seconds, std::function<void()> action) = 0;
    virtual void cancel() = 0;
};

/// Drives the keeper and the service: computes when the next look at the lease can matter and arms one timer
/// for it, none while no lease is held and nothing fails; and ends the helper in good order. Main thread.
class LidHelperLoop {
  public:
    struct Surroundings {
        const DateProvider& dates;
        const UptimeProvider& uptime;
        OneShotTimer& timer;
        std::function<void(const std::string&)> log; ///< takes one line
        std::function<void()> settled;               ///< after each request and each look; may be empty
        std::function<void()> end;                   ///< asks the program to end: `stop()` is the next call
        std::function<void(Seconds)> pause;          ///< waits, for `stop()`
    };

    /// `service`, `keeper` and all that is referred to must outlive the loop.
    LidHelperLoop(LidLeaseService& service, LidSleepLeaseKeeper& keeper, Surroundings surroundings);
    LidHelperLoop(const LidHelperLoop&) = delete;
    LidHelperLoop& operator=(const LidHelperLoop&) = delete;
    ~LidHelperLoop();

    /// For the listener: each request is handled on the main thread, and looked after. Any thread; harmless
    /// once this loop has ended or was stopped. `mainLoop` must outlive the connections.
    LidLeaseRequests requests(MainRunLoop& mainLoop);

    /// Also to be called after a wake and after the clock was set, which the timer does not see.
    void check();
    /// The setting may have been changed by something else.
    void checkStanding();

    /// While a reason is set no lease is granted: it is the answer to every renewal but that of a client that
    /// is still to be told that its lease was ended from elsewhere.
    void holdBack(std::optional<std::string> reason) { heldBackFor_ = std::move(reason); }

    /// What is now where this helper was started from. A helper that was replaced ends, for the system to
    /// start the new one, as soon as `LidHelperFileWatch::stepsAside`.
    void programFound(const LidHelperFileWatch::Finding& finding);

    /// Ends all leases and insists on putting the setting back, pausing between the tries, for
    /// `LidHelperService::stopRetryWindow`. Whether it was put back. Nothing is handled after it.
    bool stop();

  private:
    std::optional<std::string> answer(const LidLeaseRequest& request, LidClient client);
    void settle();
    void logTrouble();
    void stepAsideIfFree();
    void arm();
    [[nodiscard]] std::optional<Seconds> untilNextCheck() const;

    LidLeaseService& service_;
    LidSleepLeaseKeeper& keeper_;
    Surroundings surroundings_;
    std::optional<std::string> heldBackFor_;
    std::optional<std::string> loggedTrouble_;
    LidHelperFileWatch::Finding program_ = LidHelperFileWatch::Finding::running();
    bool isStopped_ = false;
    Lifetime lifetime_;
};

} // namespace wakeloft
