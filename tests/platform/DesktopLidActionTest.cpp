#include "DesktopLidAction.h"
#include "PrivateSystem.h"
#include "support/FakeService.h"
#include "twins/LidTwins.h"

#include <optional>

namespace wakeloft {
namespace {

struct LidAction : PrivateSystem {
    ManualConditions conditions;
    int troubles = 0;
    DesktopLidAction lid{observer.get(), conditions, [this](const PlatformError&) { ++troubles; }};

    /// And stays so for a moment, where it was so before. A question takes the place of one that waits.
    bool becomes(bool isSleep) {
        lid.isSleep();
        for (int question = 0; question < 50; ++question) {
            pass(100);
            if (lid.isSleep() == isSleep)
                return true;
        }
        return false;
    }
};

TEST_F(LidAction, KdeIsAskedAnewEachTime) {
    constexpr const char* name = "org.kde.Solid.PowerManagement";
    EXPECT_TRUE(becomes(false));
    int action = 1;
    std::optional<FakeService> kde;
    kde.emplace(bus, event, name, "/org/kde/Solid/PowerManagement/Actions/HandleButtonEvents",
                [&](sd_bus_message* call, sd_bus_error* error) {
                    return action < 0 ? sd_bus_error_set(error, "org.example.Busy", "Later.")
                                      : sd_bus_reply_method_return(call, "i", action);
                });
    pass(500);
    EXPECT_TRUE(lid.isSleep()); // it was asked as it came
    for (const auto& [told, isSleep] : {std::pair(32, false), {1, true}, {-1, true}}) {
        action = told; // the last tells nothing, and still minds the lid
        EXPECT_TRUE(becomes(isSleep)) << told;
    }
    EXPECT_TRUE(waitFor([this] { return troubles == 1; }));
    kde.reset();
    EXPECT_TRUE(becomes(false));
}

} // namespace
} // namespace wakeloft
