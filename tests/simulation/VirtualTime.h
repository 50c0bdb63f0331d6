#pragma once

#include "lease/LidHelperLoop.h"
#include "session/Clocks.h"
#include "session/DeadlineScheduler.h"
#include "support/MainRunLoop.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <random>
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
class VirtualTime final : public DateProvider,
                          public UptimeProvider,
                          public ContinuousTimeProvider,
                          public MainRunLoop {
  public:
    [[nodiscard]] Date now() const override { return {wall_}; }
    [[nodiscard]] Seconds uptime() const override { return uptime_; }
    [[nodiscard]] Seconds continuousTime() const override { return sinceBoot_; }

    void perform(std::function<void()> work) override { performAfter(0, std::move(work)); }
    void performAfter(Seconds seconds, std::function<void()> work) override;
    /// On the boot-time clock: goes on while the machine sleeps. Ends with what it returns.
    std::shared_ptr<void> startTimer(Seconds seconds, std::function<void()> work);

    /// Runs all that falls due in the next `seconds` awake, and calls `afterEach` after every event.
    void pass(Seconds seconds, const std::function<void()>& afterEach);
    /// Time that a busy process spends: nothing else runs meanwhile.
    void spend(Seconds seconds);
    void sleep(Seconds seconds);
    void setWall(Seconds by) { wall_ += by; }
    [[nodiscard]] Seconds total() const { return sinceBoot_ - bootAtStart; }

  private:
    struct Event {
        Seconds due;
        bool countsSleep;
        std::uint64_t number;
        std::weak_ptr<void> alive;
        bool isTimer;
        std::function<void()> work;
    };
    [[nodiscard]] Seconds remaining(const Event& event) const;
    bool runNext(Seconds within, const std::function<void()>& afterEach);

    static constexpr Seconds bootAtStart = 50'000;
    Seconds wall_ = 1'763'700'000;
    Seconds uptime_ = 40'000;
    Seconds sinceBoot_ = bootAtStart;
    std::uint64_t lastNumber_ = 0;
    std::vector<Event> events_;
};

/// The app's timers and the helper's, on the boot-time clock.
class VirtualTimer final : public DeadlineScheduler, public OneShotTimer {
  public:
    explicit VirtualTimer(VirtualTime& time) : time_(time) {}

    void scheduleAt(Date date, std::function<void()> action) override {
        arm(timerInterval(date, time_.now()), std::move(action));
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
