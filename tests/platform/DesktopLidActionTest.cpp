#include "DesktopLidAction.h"
#include "PrivateSystem.h"
#include "support/FakeService.h"
#include "support/Files.h"
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
    const auto started = bus.directory() / "started";
    put(bus.directory() / "kde.service",
        std::string("[D-BUS Service]\nName=") + name + "\nExec=/usr/bin/touch " + started.string() + "\n");
    EXPECT_TRUE(becomes(false));
    EXPECT_FALSE(std::filesystem::exists(started)); // nothing is started to be asked
    sd_bus_call_method_async(observer.get(), nullptr, name, "/", name, "lidAction", nullptr, nullptr, "");
    EXPECT_TRUE(waitFor([&] { return std::filesystem::exists(started); })); // by an ordinary call it is
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

TEST_F(LidAction, XfceHasOneActionOnBatteryAndOneOnMains) {
    bool isLeftAlone = false;
    std::optional<FakeService> settings;
    settings.emplace(
        bus, event, "org.xfce.Xfconf", "/org/xfce/Xfconf", [&](sd_bus_message* call, sd_bus_error*) {
            return sd_bus_reply_method_return(call, "a{sv}", 4, "/xfce4-power-manager/profile", "as", 1,
                                              "sleep", "/xfce4-power-manager/lid-action-on-ac", "u", 3U,
                                              "/xfce4-power-manager/lid-action-on-battery", "u", 1U,
                                              "/xfce4-power-manager/logind-handle-lid-switch", "b",
                                              isLeftAlone ? 1 : 0);
        });
    conditions.current.isOnBattery = true;
    EXPECT_TRUE(becomes(false)); // nobody follows the settings
    std::optional<FakeService> manager;
    manager.emplace(bus, event, "org.xfce.PowerManager", "/", nullptr);
    EXPECT_TRUE(becomes(true));
    conditions.current.isOnBattery = false;
    EXPECT_FALSE(lid.isSleep());
    conditions.current.isOnBattery = true;
    isLeftAlone = true; // to the login manager
    EXPECT_TRUE(becomes(false));
    isLeftAlone = false;
    EXPECT_TRUE(becomes(true));
    EXPECT_EQ(troubles, 0);
    settings.reset();
    EXPECT_TRUE(becomes(true)); // the manager goes by what it read
    EXPECT_TRUE(waitFor([this] { return troubles == 1; }));
    manager.reset();
    EXPECT_TRUE(becomes(false));
}

} // namespace
} // namespace wakeloft
