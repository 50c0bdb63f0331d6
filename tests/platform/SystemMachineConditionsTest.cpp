#include "BatteryWarning.h"
#include "PrivateSystem.h"
#include "SystemMachineConditionsNotifier.h"
#include "support/FakeService.h"
#include "support/Files.h"

#include <map>
#include <optional>

namespace wakeloft {
namespace {

using namespace std::string_literals;

struct Conditions : PrivateSystem {
    BusConnection system{event, *loop};
    KernelDevices kernel{(bus.directory() / "supplies").string(), (bus.directory() / "displays").string()};
    std::string trouble;
    SystemMachineConditions conditions{
        system, [this](const PlatformError& error) { trouble += error.description; }, kernel};

    /// The kernel shows a device as a folder with a file for each attribute.
    void supply(const char* name, const std::map<std::string, std::string>& attributes) const {
        for (const auto& [attribute, value] : attributes)
            put(std::filesystem::path(kernel.powerSupplies) / name / attribute, value + "\n");
    }
    void display(const char* name, const char* status, const char* use) const {
        put(std::filesystem::path(kernel.displays) / name / "status", status);
        put(std::filesystem::path(kernel.displays) / name / "enabled", use);
    }
};

TEST_F(Conditions, TheKernelTellsOfTheBattery) {
    BatteryWarning warning(observer.get(), [](bool) {}, kernel.powerSupplies);
    warning.setActive(true, nullptr);
    const auto power = [&](const char* status, const char* capacity) {
        supply("BAT0", {{"type", "Battery"}, {"status", status}, {"capacity", capacity}});
        warning.look();
        return (conditions.isOnBattery() ? "battery"s : "mains"s) +
               (warning.isCritical() ? ", almost empty" : "");
    };
    EXPECT_FALSE(conditions.isOnBattery()); // no such folder
    supply("mouse", {{"type", "Battery"}, {"scope", "Device"}, {"status", "Discharging"}, {"capacity", "1"}});
    supply("AC", {{"type", "Mains"}, {"online", "0"}});
    EXPECT_FALSE(conditions.isOnBattery());
    EXPECT_TRUE(waitFor([&] { return power("Discharging", "5") == "battery, almost empty"; })) << "no UPower";
    EXPECT_EQ(power("Discharging", "6"), "battery");
    EXPECT_EQ(power("Discharging", "none"), "battery");
    EXPECT_EQ(power("Full", "100"), "battery"); // not noticed yet
    EXPECT_EQ(power("Charging", "5"), "mains");
    supply("AC", {{"online", "1"}});
    EXPECT_EQ(power("Discharging", "50"), "mains"); // too weak a charger
}

TEST_F(Conditions, UPowerHasTheFirstWordAndTheKernelTheSecond) {
    supply("BAT0", {{"type", "Battery"}, {"status", "Discharging"}});
    SystemMachineConditionsNotifier notifier(event, conditions, nullptr);
    int told = 0;
    notifier.observe([&] { ++told; });
    const auto comesTo = [&](int count, bool isOnBattery) {
        return waitFor([&] { return told == count; }) && conditions.isOnBattery() == isOnBattery;
    };
    std::optional<bool> word = false;
    std::optional<bool> latestWord; // that comes before the answer
    constexpr const char* path = "/org/freedesktop/UPower";
    std::optional<FakeService> upower;
    const auto says = [&](std::optional<bool> latest) {
        word = latest;
        sd_bus_emit_signal(upower->bus(), path, "org.freedesktop.DBus.Properties", "PropertiesChanged",
                           "sa{sv}as", "org.freedesktop.UPower", 0, 0);
    };
    upower.emplace(bus, event, "org.freedesktop.UPower", path,
                   [&](sd_bus_message* call, sd_bus_error* error) {
                       const auto answer = word;
                       if (latestWord)
                           says(std::exchange(latestWord, std::nullopt));
                       return answer ? sd_bus_reply_method_return(call, "v", "b", *answer ? 1 : 0)
                                     : sd_bus_error_set(error, "org.example.Broken", "No power today.");
                   });
    EXPECT_TRUE(comesTo(1, false));
    says(std::nullopt);
    EXPECT_TRUE(comesTo(2, true)); // as the kernel says
    latestWord = false;
    says(true);
    EXPECT_TRUE(comesTo(4, false));
    upower.reset();
    EXPECT_TRUE(comesTo(5, true));
    EXPECT_EQ(trouble,
              "org.freedesktop.UPower does not tell its OnBattery: No power today. (org.example.Broken).");
}

TEST_F(Conditions, TheLoginManagerKnowsOfDisplaysThatTheKernelDoesNotShow) {
    EXPECT_TRUE(conditions.hasExternalDisplay());
    pass(100);
    EXPECT_TRUE(conditions.hasExternalDisplay()); // nobody knows, so nobody is warned
    int isDocked = 0;
    const FakeService docks(bus, event, "org.freedesktop.login1", "/org/freedesktop/login1",
                            [&](sd_bus_message* call, sd_bus_error*) {
                                return sd_bus_reply_method_return(call, "v", "b", isDocked);
                            });
    EXPECT_TRUE(waitFor([&] { return !conditions.hasExternalDisplay(); }));
    isDocked = 1;
    EXPECT_TRUE(waitFor([&] { return conditions.hasExternalDisplay(); }));
    display("card0-eDP-1", "connected", "enabled");
    display("card1-Virtual-1", "connected", "enabled");
    display("card0-DP-1", "connected", "disabled");
    display("card0-HDMI-A-1", "disconnected", "enabled");
    EXPECT_FALSE(conditions.hasExternalDisplay());
    display("card10-HDMI-A-2", "unknown", "enabled");
    EXPECT_TRUE(conditions.hasExternalDisplay());
    EXPECT_EQ(trouble, "");
}

} // namespace
} // namespace wakeloft
