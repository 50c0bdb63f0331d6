#include "KernelDevices.h"

#include "DeviceAttribute.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <string_view>
#include <system_error>

namespace wakeloft {

namespace {

/// "HDMI-A-1" of "card0-HDMI-A-1"; nothing for what is no connector.
std::optional<std::string> connectorName(const std::string& device) {
    const auto dash = device.find('-');
    if (!device.starts_with("card") || dash == std::string::npos)
        return std::nullopt;
    return device.substr(dash + 1);
}

/// The panel of a laptop, and what shows nobody anything.
bool isNoExternalDisplay(std::string_view connector) {
    constexpr std::array kinds = {"eDP-", "LVDS-", "DSI-", "DPI-", "Writeback-", "Virtual-"};
    return std::ranges::any_of(kinds, [&](const char* kind) { return connector.starts_with(kind); });
}

} // namespace

bool KernelDevices::isOnBattery() const {
    bool isMainsOff = false;
    bool hasBattery = false;
    bool isDischarging = false;
    bool isCharging = false;
    std::error_code error;
    for (const auto& entry : std::filesystem::directory_iterator(powerSupplies, error)) {
        const auto& supply = entry.path().native();
        if (deviceAttribute(supply, "scope") == "Device")
            continue;
        const auto type = deviceAttribute(supply, "type");
        if (type == "Battery") {
            const auto status = deviceAttribute(supply, "status");
            hasBattery = true;
            isDischarging = isDischarging || status == "Discharging";
            isCharging = isCharging || status == "Charging";
        } else if (deviceAttribute(supply, "online") == "1") {
            return false;
        } else if (type == "Mains") {
            isMainsOff = true;
        }
    }
    // A battery may say "Full" for a while after the plug was pulled.
    return isDischarging || (hasBattery && isMainsOff && !isCharging);
}

std::optional<bool> KernelDevices::hasExternalDisplay() const {
    bool hasConnector = false;
    std::error_code error;
    for (const auto& entry : std::filesystem::directory_iterator(displays, error)) {
        const auto name = connectorName(entry.path().filename().string());
        const auto status = name ? deviceAttribute(entry.path().native(), "status") : "";
        if (status.empty())
            continue;
        hasConnector = true;
        // Some connectors cannot tell whether something is plugged in.
        if (!isNoExternalDisplay(*name) && status != "disconnected" &&
            deviceAttribute(entry.path().native(), "enabled") == "enabled")
            return true;
    }
    return hasConnector ? std::optional(false) : std::nullopt;
}

} // namespace wakeloft
