#pragma once

#include "lease/SystemSleepSetting.h"
#include "support/MainRunLoop.h"
#include "twins/SessionTwins.h"

#include <algorithm>
#include <functional>
#include <mutex>
#include <optional>
#include <utility>
#include <vector>

namespace wakeloft {

/// A machine's clocks and the main loop of everything on it, turned by hand: time goes from event to event.
/// Takes work from any thread.
class ManualRunLoop final : public MainRunLoop {
  public:
    /// Moved by a busy process, too: nothing else runs meanwhile.
    ManualClocks clocks;

    void perform(std::function<void()> work) override { performAfter(0, std::move(work)); }
    void performAfter(Seconds seconds, std::function<void()> work) override {
        add(false, clocks.awake + std::max(0.0, seconds), std::move(work));
    }
    /// On the boot-time clock: goes on while the machine sleeps.
    void performCountingSleep(Seconds seconds, std::function<void()> work) {
        add(true, clocks.sinceBoot + seconds, std::move(work));
    }

    /// Runs what is ready, and what becomes ready by that.
    void turn() { pass(0); }
    /// Runs all that falls due in the next `seconds` awake, and calls `afterEach` after every event.
    void pass(Seconds seconds, const std::function<void()>& afterEach = [] {}) {
        const Seconds end = clocks.awake + seconds;
        while (runNext(std::max(0.0, end - clocks.awake))) // events take time themselves
            afterEach();
        clocks.pass(std::max(0.0, end - clocks.awake));
    }

  private:
    struct Event {
        bool countsSleep;
        Seconds due;
        std::function<void()> work;
    };
    void add(bool countsSleep, Seconds due, std::function<void()> work) {
        const std::lock_guard guard(lock_);
        events_.push_back({countsSleep, due, std::move(work)});
    }
    [[nodiscard]] Seconds remaining(const Event& event) const {
        return std::max(0.0, event.due - (event.countsSleep ? clocks.sinceBoot : clocks.awake));
    }
    bool runNext(Seconds within) {
        std::unique_lock guard(lock_);
        // Of several the first that was added.
        const auto next =
            std::ranges::min_element(events_, {}, [this](const Event& each) { return remaining(each); });
        if (next == events_.end() || remaining(*next) > within)
            return false;
        clocks.pass(remaining(*next));
        const auto work = std::move(next->work);
        events_.erase(next);
        guard.unlock();
        work();
        return true;
    }

    std::mutex lock_;
    std::vector<Event> events_;
};

/// A sleep setting in memory that records its writes, the failed ones too, and fails on demand.
struct ManualSleepSetting final : SystemSleepSetting {
    bool isDisabled = false;
    std::optional<PlatformError> writeError;
    std::optional<PlatformError> readError;
    std::vector<bool> writes;

    std::expected<void, PlatformError> writeDisabled(bool disabled) override {
        writes.push_back(disabled);
        if (writeError)
            return std::unexpected(*writeError);
        isDisabled = disabled;
        return {};
    }
    std::expected<bool, PlatformError> readDisabled() override {
        if (readError)
            return std::unexpected(*readError);
        return isDisabled;
    }
};

} // namespace wakeloft
