#pragma once

#include "lease/SystemSleepSetting.h"
#include "support/MainRunLoop.h"

#include <functional>
#include <map>
#include <mutex>
#include <optional>
#include <utility>
#include <vector>

namespace wakeloft {

/// A main loop on a clock of its own, turned by hand. Takes work from any thread.
struct ManualRunLoop final : MainRunLoop {
    void perform(std::function<void()> work) override { performAfter(0, std::move(work)); }
    void performAfter(Seconds seconds, std::function<void()> work) override {
        const std::lock_guard guard(lock);
        waiting.emplace(now + seconds, std::move(work));
    }

    /// Runs what is ready, and what becomes ready by that.
    void turn() { pass(0); }
    void pass(Seconds seconds) {
        const Seconds end = now + seconds;
        while (const auto work = nextUntil(end))
            work();
        now = end;
    }

    std::function<void()> nextUntil(Seconds end) {
        const std::lock_guard guard(lock);
        if (waiting.empty() || waiting.begin()->first > end)
            return nullptr;
        now = waiting.begin()->first;
        return std::move(waiting.extract(waiting.begin()).mapped());
    }

    std::mutex lock;
    Seconds now = 0;
    std::multimap<Seconds, std::function<void()>> waiting;
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
