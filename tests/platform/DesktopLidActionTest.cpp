#include "DesktopLidAction.h"
#include "SdEventMainRunLoop.h"
#include "support/FakeService.h"
#include "twins/LidTwins.h"

#include <filesystem>
#include <fstream>
#include <memory>

namespace wakeloft {
namespace {

struct LidAction : testing::Test {
    PrivateBus bus;
    std::unique_ptr<SdEventMainRunLoop> loop = std::move(SdEventMainRunLoop::create().value());
    sd_event* event = loop->event();
    BusPointer session = bus.connect(event);
    ManualConditions conditions;
    int troubles = 0;
    DesktopLidAction lid{session.get(), conditions, [this](const PlatformError&) { ++troubles; }};

    void settle() {
        runUntil(event, [] { return false; }, 100);
    }
    /// It takes no more than two questions to see it.
    bool becomes(bool isSleep) {
        lid.isSleep();
        settle();
        return lid.isSleep() == isSleep;
    }
};

TEST_F(LidAction, KdeIsAskedAnewEachTime) {
    constexpr const char* name = "org.kde.Solid.PowerManagement";
    const auto started = bus.directory() / "started";
    std::ofstream(bus.directory() / "kde.service")
        << "[D-BUS Service]\nName=" << name << "\nExec=/usr/bin/touch " << started.string() << "\n";
    EXPECT_TRUE(becomes(false));
    EXPECT_EQ(troubles, 0);
    EXPECT_FALSE(std::filesystem::exists(started)); // nothing is started to be asked
    {
        int action = 1;
        const FakeService kde(bus, event, name, "/org/kde/Solid/PowerManagement/Actions/HandleButtonEvents",
                              [&](sd_bus_message* call, sd_bus_error* error) {
                                  return action < 0 ? sd_bus_error_set(error, "org.example.Busy", "Later.")
                                                    : sd_bus_reply_method_return(call, "i", action);
                              });
        settle();
        EXPECT_TRUE(lid.isSleep()); // it was asked as it came
        action = 32;
        EXPECT_TRUE(becomes(false));
        action = 1;
        EXPECT_TRUE(becomes(true));
        action = -1;
        EXPECT_TRUE(becomes(true)); // it still minds the lid
        EXPECT_TRUE(becomes(true));
        EXPECT_EQ(troubles, 1);
    }
    settle();
    EXPECT_FALSE(lid.isSleep());
    EXPECT_FALSE(DesktopLidAction(nullptr, conditions, nullptr).isSleep());
}

TEST_F(LidAction, XfceHasOneActionOnBatteryAndOneOnMains) {
    std::uint32_t onBattery = 1;
    bool isLeftAlone = false;
    auto settings = std::make_unique<FakeService>(
        bus, event, "org.xfce.Xfconf", "/org/xfce/Xfconf", [&](sd_bus_message* call, sd_bus_error*) {
            const std::string prefix = "/xfce4-power-manager/";
            return sd_bus_reply_method_return(
                call, "a{sv}", 4, (prefix + "profile").c_str(), "as", 1, "sleep",
                (prefix + "lid-action-on-ac").c_str(), "u", 3U, (prefix + "lid-action-on-battery").c_str(),
                "u", onBattery, (prefix + "logind-handle-lid-switch").c_str(), "b", isLeftAlone ? 1 : 0);
        });
    EXPECT_TRUE(becomes(false)); // nobody follows the settings
    auto manager = std::make_unique<FakeService>(bus, event, "org.xfce.PowerManager", "/", nullptr);
    EXPECT_TRUE(becomes(false));
    conditions.current.isOnBattery = true;
    EXPECT_TRUE(lid.isSleep());
    isLeftAlone = true; // to the login manager
    EXPECT_TRUE(becomes(false));
    isLeftAlone = false;
    onBattery = 0;
    EXPECT_TRUE(becomes(false));
    onBattery = 1;
    EXPECT_TRUE(becomes(true));
    EXPECT_EQ(troubles, 0);
    settings.reset();
    EXPECT_TRUE(becomes(true)); // the manager goes by what it read
    EXPECT_EQ(troubles, 1);
    manager.reset();
    EXPECT_TRUE(becomes(false));
}

} // namespace
} // namespace wakeloft
