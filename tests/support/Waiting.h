#pragma once

#include <chrono>
#include <functional>
#include <optional>
#include <thread>

namespace wakeloft {

/// Looks until `condition` holds, at most `timeoutMs`: the milliseconds that it took, or nothing. Pauses
/// between two looks, as what is waited for needs the processor.
inline std::optional<double> comesTrue(const std::function<bool()>& condition, double timeoutMs = 10'000,
                                       std::chrono::milliseconds pause = std::chrono::milliseconds(10)) {
    using Clock = std::chrono::steady_clock;
    const auto start = Clock::now();
    for (double taken = 0; taken <= timeoutMs; std::this_thread::sleep_for(pause)) {
        const bool holds = condition();
        taken = std::chrono::duration<double, std::milli>(Clock::now() - start).count();
        if (holds)
            return taken;
    }
    return std::nullopt;
}

} // namespace wakeloft
