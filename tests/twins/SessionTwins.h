#pragma once

#include "session/AwakeController.h"

#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace wakeloft {

/// Clocks that tests move by hand: `pass` is time awake, `sleep` is time asleep, `setWall` is a clock change.
struct ManualClocks final : DateProvider, ContinuousTimeProvider, UptimeProvider {
    Seconds wall = 1'763'700'000;
    Seconds sinceBoot = 5'000;
    Seconds awake = 4'000;

    [[nodiscard]] Date now() const override { return {wall}; }
    [[nodiscard]] Seconds continuousTime() const override { return sinceBoot; }
    [[nodiscard]] Seconds uptime() const override { return awake; }

    void pass(Seconds seconds) {
        awake += seconds;
        sleep(seconds);
    }
    void sleep(Seconds seconds) {
        wall += seconds;
        sinceBoot += seconds;
    }
    void moveWall(Seconds seconds) { wall += seconds; }
};

/// Records what is asked of it and fails on demand.
struct ManualBlocker final : SleepBlocker {
    std::vector<std::string> calls;
    std::optional<Error> refusal;
    std::optional<Error> shortfall;
    std::function<void(std::expected<void, Error>)> holdChanged;
    bool engaged = false;

    std::expected<void, Error> engage() override {
        calls.emplace_back("engage");
        if (refusal)
            return std::unexpected(*refusal);
        engaged = true;
        return {};
    }
    void release() override {
        calls.emplace_back("release");
        engaged = false;
    }
    [[nodiscard]] bool isEngaged() const override { return engaged; }
    [[nodiscard]] std::optional<Error> limitation() const override { return shortfall; }
    void observeHold(std::function<void(std::expected<void, Error>)> changed) override {
        holdChanged = std::move(changed);
    }
};

struct ManualScheduler final : DeadlineScheduler {
    std::optional<Date> date;
    std::function<void()> action;

    void scheduleAt(Date when, std::function<void()> what) override {
        date = when;
        action = std::move(what);
    }
    void cancel() override {
        date.reset();
        action = nullptr;
    }
    void fire() { std::exchange(action, nullptr)(); }
};

struct ManualRecheck final : DeadlineRecheckNotifier {
    std::function<void()> handler;

    void observe(std::function<void()> latest) override { handler = std::move(latest); }
};

} // namespace wakeloft
