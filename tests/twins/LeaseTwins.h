#pragma once

#include "lease/SystemSleepSetting.h"
#include "support/MainRunLoop.h"

#include <deque>
#include <map>
#include <mutex>
#include <optional>
#include <utility>
#include <vector>

namespace wakeloft {

/// A main loop on a clock of its own, turned by hand. Takes work from any thread.
struct ManualRunLoop final : MainRunLoop {
    void perform(std::function<void()> work) override {
        const std::lock_guard guard(lock);
        ready.push_back(std::move(work));
    }
    void performAfter(Seconds seconds, std::function<void()> work) override {
        const std::lock_guard guard(lock);
        timed.emplace(now + seconds, std::move(work));
    }

    /// Runs what is ready, and what becomes ready by that.
    void turn() {
        while (auto work = next())
            work();
    }
    void pass(Seconds seconds) {
        const Seconds end = now + seconds;
        turn();
        while (!timed.empty() && timed.begin()->first <= end) {
            now = timed.begin()->first;
            perform(timed.extract(timed.begin()).mapped());
            turn();
        }
        now = end;
    }

    std::function<void()> next() {
        const std::lock_guard guard(lock);
        if (ready.empty())
            return nullptr;
        auto work = std::move(ready.front());
        ready.pop_front();
        return work;
    }

    std::mutex lock;
    Seconds now = 0;
    std::deque<std::function<void()>> ready;
    std::multimap<Seconds, std::function<void()>> timed;
};

/// A sleep setting in memory that records its writes, the failed ones too, and fails on demand.
struct ManualSleepSetting final : SystemSleepSetting {
    bool isDisabled = false;
    std::optional<PlatformError> writeError;
    std::optional<PlatformError> readError;
    std::vector<bool> writes;
    int reads = 0;

    std::expected<void, PlatformError> writeDisabled(bool disabled) override {
        writes.push_back(disabled);
        if (writeError)
            return std::unexpected(*writeError);
        isDisabled = disabled;
        return {};
    }
    std::expected<bool, PlatformError> readDisabled() override {
        ++reads;
        if (readError)
            return std::unexpected(*readError);
        return isDisabled;
    }
};

} // namespace wakeloft
