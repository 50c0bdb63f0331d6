#pragma once

#include <cstdint>
#include <optional>

namespace wakeloft {

/// An Apple event with what tells who asks the app to quit. Its codes are four characters each.
struct QuitAppleEvent {
    std::uint32_t eventClass = 0;
    std::uint32_t identifier = 0;
    std::optional<std::uint32_t> reason; ///< of a request to quit, where it names one

    /// A request to quit by which the system ends all programs: log out, restart, shut down, quit all.
    [[nodiscard]] bool isFromSystem() const;

    /// The event that the app is handling right now; nothing outside of one. Main thread.
    static std::optional<QuitAppleEvent> current();
};

} // namespace wakeloft
