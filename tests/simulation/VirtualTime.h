#pragma once

#include "lease/LidHelperLoop.h"
#include "support/MainRunLoop.h"
#include "twins/SessionTwins.h"

#include <algorithm>
#include <cstdint>
#include <functional>
#include <memory>
#include <random>
#include <utility>
#include <vector>

namespace wakeloft {

/// Chance, the same for the same seed on every machine.
class Chance {
  public:
    explicit Chance(std::uint64_t seed) : engine_(seed) {}

    /// From 0 up to, not including, `count`.
    std::uint64_t below(std::uint64_t count) { return engine_() % count; }
    bool percent(unsigned chance) { return below(100) < chance; }
    Seconds between(Seconds least, Seconds most) {
        return least + (most - least) * static_cast<double>(below(1'000'001)) / 1e6;
    }

  private:
    std::mt19937_64 engine_;
};

/// The machine's clocks and the main loop of everything on it. Time goes from event to event.
class VirtualTime final : public MainRunLoop {
  public:
    /// Moved by a busy process, too: nothing else runs meanwhile.
    ManualClocks clocks;

    void perform(std::function<void()> work) override { performAfter(0, std::move(work)); }
    void performAfter(Seconds seconds, std::function<void()> work) override {
        add(false, clocks.awake + std::max(0.0, seconds), std::move(work));
    }
    /// On the boot-time clock: goes on while the machine sleeps. Ends with what it returns.
    std::shared_ptr<void> startTimer(Seconds seconds, std::function<void()> work) {
        auto owned = std::make_shared<std::function<void()>>(std::move(work));
        add(true, clocks.sinceBoot + seconds, [timer = std::weak_ptr(owned)] {
            if (const auto running = timer.lock())
                (*running)();
        });
        return owned;
    }

    /// Runs all that falls due in the next `seconds` awake, and calls `afterEach` after every event.
    void pass(Seconds seconds, const std::function<void()>& afterEach) {
        const Seconds end = clocks.awake + seconds;
        while (runNext(std::max(0.0, end - clocks.awake))) // events take time themselves
            afterEach();
        clocks.pass(std::max(0.0, end - clocks.awake));
    }

  private:
    struct Event {
        bool countsSleep;
        Seconds due;
        std::uint64_t number;
        std::function<void()> work;
    };
    void add(bool countsSleep, Seconds due, std::function<void()> work) {
        events_.push_back({countsSleep, due, ++lastNumber_, std::move(work)});
    }
    [[nodiscard]] Seconds remaining(const Event& event) const {
        return std::max(0.0, event.due - (event.countsSleep ? clocks.sinceBoot : clocks.awake));
    }
    bool runNext(Seconds within) {
        const auto next = std::ranges::min_element(
            events_, {}, [this](const Event& each) { return std::pair(remaining(each), each.number); });
        if (next == events_.end() || remaining(*next) > within)
            return false;
        clocks.pass(remaining(*next));
        const auto work = std::move(next->work);
        events_.erase(next);
        work();
        return true;
    }

    std::uint64_t lastNumber_ = 0;
    std::vector<Event> events_;
};

/// The app's timers and the helper's, on the boot-time clock.
class VirtualTimer final : public DeadlineScheduler, public OneShotTimer {
  public:
    explicit VirtualTimer(VirtualTime& time) : time_(time) {}

    void scheduleAt(Date date, std::function<void()> action) override {
        arm(timerInterval(date, time_.clocks.now()), std::move(action));
    }
    void arm(Seconds seconds, std::function<void()> action) override {
        pending_ = time_.startTimer(seconds, std::move(action));
    }
    void cancel() override { pending_.reset(); }

  private:
    VirtualTime& time_;
    std::shared_ptr<void> pending_;
};

} // namespace wakeloft
