#include "SdEventMainRunLoop.h"
#include "SystemMachineConditionsNotifier.h"
#include "support/FakeService.h"

#include <linux/netlink.h>
#include <sched.h>
#include <sys/mount.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>
#include <memory>

namespace wakeloft {
namespace {

namespace fs = std::filesystem;
using Device = std::map<std::string, std::string>;
using Devices = std::map<std::string, Device>;

const Device discharging{{"type", "Battery"}, {"status", "Discharging"}};

struct Conditions : testing::Test {
    PrivateBus bus;
    std::unique_ptr<SdEventMainRunLoop> loop = std::move(SdEventMainRunLoop::create().value());
    BusConnection system{loop->event(), *loop};
    KernelDevices kernel{(bus.directory() / "supplies").string(), (bus.directory() / "displays").string()};
    std::vector<std::string> trouble;
    SystemMachineConditions conditions{
        onPrivateBus(), [this](const PlatformError& error) { trouble.push_back(error.description); }, kernel};

    BusConnection& onPrivateBus() {
        setenv("DBUS_SYSTEM_BUS_ADDRESS", bus.address().c_str(), 1);
        return system;
    }
    static void make(const fs::path& folder, const Devices& devices) {
        fs::remove_all(folder);
        for (const auto& [device, attributes] : devices)
            for (const auto& [name, value] : attributes) {
                fs::create_directories(folder / device);
                std::ofstream(folder / device / name) << value << "\n";
            }
    }
    bool isOnBattery(const Devices& supplies) {
        make(kernel.powerSupplies, supplies);
        return conditions.isOnBattery();
    }
    std::optional<bool> hasExternalDisplay(const Devices& connectors) {
        make(kernel.displays, connectors);
        return kernel.hasExternalDisplay();
    }
    bool comesTo(const std::function<bool()>& condition) { return runUntil(loop->event(), condition, 3000); }
};

TEST_F(Conditions, TheKernelTellsOfTheBattery) {
    const auto mains = [](const char* online) { return Device{{"type", "Mains"}, {"online", online}}; };
    const auto battery = [](const char* status) { return Device{{"type", "Battery"}, {"status", status}}; };
    auto mouse = discharging;
    mouse["scope"] = "Device";
    EXPECT_FALSE(conditions.isOnBattery()); // no such folder
    EXPECT_FALSE(isOnBattery({{"AC", mains("0")}, {"mouse", mouse}}));
    EXPECT_TRUE(isOnBattery({{"AC", mains("0")}, {"BAT0", discharging}}));
    EXPECT_TRUE(isOnBattery({{"AC", mains("0")}, {"BAT0", battery("Full")}})); // not noticed yet
    EXPECT_TRUE(isOnBattery({{"BAT0", battery("Unknown")}, {"BAT1", discharging}}));
    EXPECT_FALSE(isOnBattery({{"AC", mains("1")}, {"BAT0", discharging}})); // too weak a charger
    EXPECT_FALSE(isOnBattery({{"AC", mains("0")}, {"BAT0", battery("Charging")}}));
    EXPECT_FALSE(isOnBattery({{"BAT0", battery("Full")}}));
    EXPECT_FALSE(isOnBattery(
        {{"AC", mains("0")}, {"BAT0", battery("Full")}, {"usb", {{"type", "USB"}, {"online", "1"}}}}));
}

TEST_F(Conditions, TheKernelTellsOfTheDisplays) {
    const Device on{{"status", "connected"}, {"enabled", "enabled"}};
    const Device off{{"status", "connected"}, {"enabled", "disabled"}};
    const Device unsure{{"status", "unknown"}, {"enabled", "enabled"}};
    EXPECT_EQ(kernel.hasExternalDisplay(), std::nullopt);
    EXPECT_EQ(hasExternalDisplay({{"card0", on}, {"renderD128", on}, {"version", on}}), std::nullopt);
    EXPECT_EQ(hasExternalDisplay({{"card0-eDP-1", on},
                                  {"card0-LVDS-1", on},
                                  {"card1-DSI-1", on},
                                  {"card1-DPI-1", on},
                                  {"card1-Writeback-1", unsure},
                                  {"card1-Virtual-1", on},
                                  {"card0-DP-1", off},
                                  {"card0-HDMI-A-1", {{"status", "disconnected"}, {"enabled", "enabled"}}}}),
              false);
    for (const char* name : {"card0-DP-1", "card10-HDMI-A-2", "card1-DVI-I-1"})
        EXPECT_EQ(hasExternalDisplay({{"card0-eDP-1", on}, {name, on}}), true) << name;
    EXPECT_EQ(hasExternalDisplay({{"card0-VGA-1", unsure}}), true);
}

TEST_F(Conditions, UPowerHasTheFirstWordAndTheKernelTheSecond) {
    SystemMachineConditionsNotifier notifier(loop->event(), conditions, nullptr);
    int told = 0;
    notifier.observe([&] { told += 100; });
    notifier.observe([&] { ++told; });
    std::optional<bool> word = true;
    constexpr const char* path = "/org/freedesktop/UPower";
    auto upower = std::make_unique<FakeService>(
        bus, loop->event(), "org.freedesktop.UPower", path, [&](sd_bus_message* call, sd_bus_error* error) {
            return word ? sd_bus_reply_method_return(call, "v", "b", *word ? 1 : 0)
                        : sd_bus_error_set(error, "org.example.Broken", "No power today.");
        });
    const auto says = [&](std::optional<bool> latest) {
        word = latest;
        EXPECT_GE(sd_bus_emit_signal(upower->bus(), path, "org.freedesktop.DBus.Properties",
                                     "PropertiesChanged", "sa{sv}as", "org.freedesktop.UPower", 0, 0),
                  0);
    };
    EXPECT_TRUE(comesTo([&] { return told == 1; })); // once, and the latest alone
    EXPECT_TRUE(conditions.isOnBattery());
    says(false);
    EXPECT_TRUE(comesTo([&] { return told == 2; }));
    EXPECT_FALSE(isOnBattery({{"BAT0", discharging}}));
    says(std::nullopt);
    EXPECT_TRUE(comesTo([&] { return told == 3; }));
    EXPECT_TRUE(conditions.isOnBattery()); // as the kernel says
    says(std::nullopt);
    says(false);
    EXPECT_TRUE(comesTo([&] { return told == 4; }));
    EXPECT_EQ(trouble, std::vector<std::string>{"org.freedesktop.UPower does not tell its OnBattery: "
                                                "No power today. (org.example.Broken)."});
    upower.reset();
    EXPECT_TRUE(comesTo([&] { return told == 5; }));
    EXPECT_TRUE(conditions.isOnBattery());
}

TEST_F(Conditions, TheLoginManagerKnowsOfDisplaysThatTheKernelDoesNotShow) {
    EXPECT_TRUE(conditions.hasExternalDisplay());
    runUntil(loop->event(), [] { return false; }, 100);
    EXPECT_TRUE(conditions.hasExternalDisplay()); // nobody knows, so nobody is warned
    bool isDocked = false;
    const FakeService loginManager(bus, loop->event(), "org.freedesktop.login1", "/org/freedesktop/login1",
                                   [&](sd_bus_message* call, sd_bus_error*) {
                                       return sd_bus_reply_method_return(call, "v", "b", isDocked ? 1 : 0);
                                   });
    EXPECT_TRUE(comesTo([&] { return !conditions.hasExternalDisplay(); }));
    isDocked = true;
    EXPECT_TRUE(comesTo([&] { return conditions.hasExternalDisplay(); }));
    make(kernel.displays, {{"card0-eDP-1", {{"status", "connected"}, {"enabled", "enabled"}}}});
    EXPECT_FALSE(conditions.hasExternalDisplay());
    EXPECT_EQ(trouble, std::vector<std::string>());
}

bool writeTo(const char* path, const std::string& text) {
    return (std::ofstream(path) << text).flush().good();
}

/// In a network and a view of /run of its own this process can make device events.
bool enterOwnDevices() {
    const auto user = "0 " + std::to_string(geteuid()) + " 1";
    const auto group = "0 " + std::to_string(getegid()) + " 1";
    std::error_code error;
    return unshare(CLONE_NEWUSER | CLONE_NEWNET | CLONE_NEWNS) == 0 &&
           writeTo("/proc/self/setgroups", "deny") && writeTo("/proc/self/uid_map", user) &&
           writeTo("/proc/self/gid_map", group) && mount("run", "/run", "tmpfs", 0, nullptr) == 0 &&
           fs::create_directory("/run/udev", error) &&
           writeTo("/run/udev/control", "there is a device manager");
}

void sendDeviceEvent(const std::string& subsystem) {
    const std::string path = "/devices/test/" + subsystem;
    std::string event;
    for (const auto& field : {"change@" + path, std::string("ACTION=change"), "DEVPATH=" + path,
                              "SUBSYSTEM=" + subsystem, std::string("SEQNUM=1")})
        event.append(field).push_back('\0');
    sockaddr_nl listeners{};
    listeners.nl_family = AF_NETLINK;
    listeners.nl_groups = 2; // of the device manager
    const int descriptor = socket(AF_NETLINK, SOCK_RAW | SOCK_CLOEXEC, NETLINK_KOBJECT_UEVENT);
    if (descriptor < 0)
        return;
    sendto(descriptor, event.data(), event.size(), 0, reinterpret_cast<const sockaddr*>(&listeners),
           sizeof listeners);
    close(descriptor);
}

TEST_F(Conditions, DeviceEventsOfSuppliesAndDisplaysAreTold) {
    constexpr int notAllowed = 77;
    const pid_t child = fork();
    if (child == 0) {
        if (!enterOwnDevices())
            _exit(notAllowed);
        const auto own = std::move(SdEventMainRunLoop::create().value()); // a loop is not shared
        SystemMachineConditionsNotifier notifier(own->event(), conditions, nullptr);
        std::vector<int> told;
        int count = 0;
        notifier.observe([&] { count += 100; });
        notifier.observe([&] { ++count; });
        for (const char* subsystem : {"usb", "drm", "power_supply"}) {
            sendDeviceEvent(subsystem);
            runUntil(own->event(), [] { return false; }, 200);
            told.push_back(std::exchange(count, 0));
        }
        _exit(told == std::vector{0, 1, 1} ? 0 : 1);
    }
    int status = 0;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    if (WIFEXITED(status) && WEXITSTATUS(status) == notAllowed)
        GTEST_SKIP() << "this machine allows no namespaces of one's own";
    EXPECT_EQ(status, 0);
}

} // namespace
} // namespace wakeloft
