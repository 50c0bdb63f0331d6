#include "BatteryWarning.h"
#include "SdEventMainRunLoop.h"
#include "support/PrivateBus.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <map>
#include <memory>
#include <string>

namespace wakeloft {
namespace {

TEST(BatteryWarning, WithoutUPowerItIsReadFromTheKernel) {
    const PrivateBus bus;
    const auto loop = std::move(SdEventMainRunLoop::create().value());
    const BusPointer connection = bus.connect(loop->event());
    const auto supplies = bus.directory() / "power_supply";
    const auto supply = [&](const char* name, const std::map<std::string, std::string>& attributes) {
        std::filesystem::create_directories(supplies / name);
        for (const auto& [attribute, value] : attributes)
            std::ofstream(supplies / name / attribute) << value << '\n';
    };
    int told = 0;
    BatteryWarning warning(connection.get(), [&](bool) { ++told; }, supplies.string());
    const auto failed = [](const PlatformError& error) { ADD_FAILURE() << error.description; };
    warning.setActive(true, failed); // with no such folder
    runUntil(loop->event(), [] { return false; }, 50);
    supply("AC", {{"type", "Mains"}, {"online", "0"}});
    supply("mouse", {{"type", "Battery"}, {"scope", "Device"}, {"status", "Discharging"}, {"capacity", "1"}});
    supply("BAT0", {{"type", "Battery"}, {"status", "Discharging"}, {"capacity", "6"}});
    supply("BAT1", {{"type", "Battery"}, {"status", "Discharging"}, {"capacity", "none"}});
    warning.look();
    EXPECT_FALSE(warning.isCritical());
    supply("BAT0", {{"capacity", "5"}});
    warning.look();
    EXPECT_TRUE(warning.isCritical());
    supply("BAT0", {{"status", "Charging"}});
    warning.look();
    EXPECT_FALSE(warning.isCritical());
    EXPECT_EQ(told, 2);
}

} // namespace
} // namespace wakeloft
