#include "BatteryWarning.h"

#include "DeviceAttribute.h"

#include <dirent.h>

#include <cerrno>
#include <charconv>
#include <memory>
#include <system_error>
#include <utility>

namespace wakeloft {

namespace {

constexpr const char* service = "org.freedesktop.UPower";
constexpr const char* path = "/org/freedesktop/UPower/devices/DisplayDevice";
constexpr std::uint32_t criticalLevel = 4; // 5 is "acts now"
constexpr int criticalPercentage = 5;

struct FolderCloser {
    void operator()(DIR* folder) const { closedir(folder); }
};

bool isRunningOut(const std::string& supply) {
    if (deviceAttribute(supply, "type") != "Battery" || deviceAttribute(supply, "scope") == "Device" ||
        deviceAttribute(supply, "status") != "Discharging")
        return false;
    const std::string text = deviceAttribute(supply, "capacity");
    int percentage = 0;
    const auto read = std::from_chars(text.data(), text.data() + text.size(), percentage);
    return read.ec == std::errc() && percentage <= criticalPercentage;
}

} // namespace

BatteryWarning::BatteryWarning(sd_bus* bus, std::function<void(bool)> changed, std::string supplies)
    : bus_(bus), changed_(std::move(changed)), supplies_(std::move(supplies)) {}

void BatteryWarning::setActive(bool isActive, const std::function<void(const PlatformError&)>& failed) {
    if (isActive == std::exchange(isActive_, isActive))
        return;
    properties_.reset();
    owner_.reset();
    pending_.reset();
    if (!isActive)
        return;
    if (const auto followed = follow(); !followed)
        failed(followed.error());
    ask();
}

std::expected<void, PlatformError> BatteryWarning::follow() {
    auto properties = matchBusSignal(bus_,
                                     "type='signal',sender='org.freedesktop.UPower',"
                                     "path='/org/freedesktop/UPower/devices/DisplayDevice',"
                                     "interface='org.freedesktop.DBus.Properties',member='PropertiesChanged'",
                                     [this](sd_bus_message*) { ask(); });
    if (!properties)
        return std::unexpected(std::move(properties.error()));
    auto owner = watchBusName(bus_, service, [this](const std::string& newOwner) {
        hasUPower_ = !newOwner.empty();
        if (hasUPower_)
            ask();
        else
            look();
    });
    if (!owner)
        return std::unexpected(std::move(owner.error()));
    properties_ = std::move(*properties);
    owner_ = std::move(*owner);
    return {};
}

void BatteryWarning::ask() {
    sd_bus_message* message = nullptr;
    int result = sd_bus_message_new_method_call(bus_, &message, service, path,
                                                "org.freedesktop.DBus.Properties", "Get");
    const BusMessage call(message);
    if (result >= 0)
        result = sd_bus_message_append(message, "ss", "org.freedesktop.UPower.Device", "WarningLevel");
    if (result >= 0)
        if (auto slot = callBusLater(bus_, message, [this](sd_bus_message* reply) { answered(reply); })) {
            pending_ = std::move(*slot);
            return;
        }
    hasUPower_ = false; // as good as none
    look();
}

void BatteryWarning::answered(sd_bus_message* reply) {
    pending_.reset();
    std::uint32_t level = 0;
    hasUPower_ =
        sd_bus_message_get_error(reply) == nullptr && sd_bus_message_read(reply, "v", "u", &level) >= 0;
    if (hasUPower_)
        judge(level >= criticalLevel);
    else
        look();
}

void BatteryWarning::look() {
    if (hasUPower_ || !isActive_)
        return;
    const std::unique_ptr<DIR, FolderCloser> folder(opendir(supplies_.c_str()));
    bool isCritical = false;
    while (const dirent* supply = folder != nullptr ? readdir(folder.get()) : nullptr)
        isCritical = isCritical || isRunningOut(supplies_ + '/' + supply->d_name);
    judge(isCritical);
}

void BatteryWarning::judge(bool isCritical) {
    if (isCritical != std::exchange(isCritical_, isCritical))
        changed_(isCritical);
}

} // namespace wakeloft
