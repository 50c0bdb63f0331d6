#include "QuitAppleEvent.h"

#include <gtest/gtest.h>

#include <string_view>

namespace wakeloft {
namespace {

std::uint32_t code(std::string_view text) {
    std::uint32_t number = 0;
    for (const char each : text)
        number = number * 256 + static_cast<unsigned char>(each);
    return number;
}

TEST(QuitAppleEvent, ComesFromTheSystemForTheReasonsByWhichTheSystemEndsPrograms) {
    const auto quit = [](std::optional<std::string_view> why) {
        return QuitAppleEvent{code("aevt"), code("quit"), why ? std::optional(code(*why)) : std::nullopt};
    };
    for (const auto* reason : {"quia", "rlgo", "rest", "shut", "logo"}) {
        EXPECT_TRUE(quit(reason).isFromSystem()) << reason;
        EXPECT_FALSE((QuitAppleEvent{code("aevt"), code("rapp"), code(reason)}.isFromSystem())) << reason;
        EXPECT_FALSE((QuitAppleEvent{code("misc"), code("quit"), code(reason)}.isFromSystem())) << reason;
    }
    EXPECT_FALSE(quit(std::nullopt).isFromSystem()); // another program, by a script say
    EXPECT_FALSE(quit("ogol").isFromSystem());
}

} // namespace
} // namespace wakeloft
