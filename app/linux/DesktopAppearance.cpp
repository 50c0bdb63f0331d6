#include "DesktopAppearance.h"

#include <QDebug>

#include <cstring>
#include <optional>
#include <utility>

namespace wakeloft {

namespace {

constexpr auto portal = "org.freedesktop.portal.Desktop";
constexpr auto portalPath = "/org/freedesktop/portal/desktop";
constexpr auto settingsInterface = "org.freedesktop.portal.Settings";
constexpr auto appearanceSpace = "org.freedesktop.appearance";
constexpr std::uint32_t prefersDark = 1;
constexpr std::uint32_t prefersLessMotion = 1;

/// A number or a truth value, which may be wrapped in more than one variant; nothing where it is neither.
std::optional<std::uint32_t> readValue(sd_bus_message* message) {
    char type = 0;
    const char* contents = nullptr;
    while (sd_bus_message_peek_type(message, &type, &contents) > 0 && type == SD_BUS_TYPE_VARIANT)
        if (sd_bus_message_enter_container(message, SD_BUS_TYPE_VARIANT, contents) < 0)
            return {};
    std::uint32_t value = 0; // sd-bus reads a truth value into as many bytes
    if ((type != SD_BUS_TYPE_UINT32 && type != SD_BUS_TYPE_BOOLEAN) ||
        sd_bus_message_read_basic(message, type, &value) < 0)
        return {};
    return value;
}

} // namespace

DesktopAppearance::DesktopAppearance(sd_bus* bus, std::function<void(const Appearance&)> changed)
    : bus_(bus),
      changed_(std::move(changed)),
      colorScheme_{appearanceSpace, "color-scheme", this, 0},
      reducedMotion_{appearanceSpace, "reduced-motion", this, 0},
      animations_{"org.gnome.desktop.interface", "enable-animations", this, 1} {} // older than that

std::expected<std::unique_ptr<DesktopAppearance>, PlatformError>
DesktopAppearance::follow(sd_bus* bus, std::function<void(const Appearance&)> changed) {
    std::unique_ptr<DesktopAppearance> followed(new DesktopAppearance(bus, std::move(changed)));
    sd_bus_slot* slot = nullptr;
    const int result = sd_bus_match_signal_async(bus, &slot, portal, portalPath, settingsInterface,
                                                 "SettingChanged", settingChanged, nullptr, followed.get());
    if (result < 0)
        return std::unexpected(busFailure("The desktop's appearance cannot be followed", result));
    followed->settingChanges_.reset(slot);

    auto owner = watchBusName(bus, portal, [self = followed.get()](const std::string& newOwner) {
        if (newOwner.empty())
            return;
        if (auto asked = self->read(); !asked) // a portal that came late
            qWarning("%s", asked.error().description.c_str());
    });
    if (!owner)
        return std::unexpected(owner.error());
    followed->ownerChanges_ = std::move(*owner);

    if (auto asked = followed->read(); !asked)
        return std::unexpected(asked.error());
    return followed;
}

std::expected<void, PlatformError> DesktopAppearance::read() {
    for (Setting* setting : settings()) {
        sd_bus_slot* slot = nullptr;
        // "Read", not "ReadOne": every version of the portal has it.
        const int result =
            sd_bus_call_method_async(bus_, &slot, portal, portalPath, settingsInterface, "Read", answered,
                                     setting, "ss", setting->space, setting->key);
        if (result < 0)
            return std::unexpected(busFailure("The desktop's appearance cannot be read", result));
        setting->reading.reset(slot);
    }
    return {};
}

/// A portal that does not know a setting answers with an error.
int DesktopAppearance::answered(sd_bus_message* message, void* userdata, sd_bus_error*) {
    auto& setting = *static_cast<Setting*>(userdata);
    if (sd_bus_message_is_method_error(message, nullptr) == 0)
        setting.owner->take(setting, message);
    return 0;
}

int DesktopAppearance::settingChanged(sd_bus_message* message, void* userdata, sd_bus_error*) {
    auto* self = static_cast<DesktopAppearance*>(userdata);
    const char* space = nullptr;
    const char* key = nullptr;
    if (sd_bus_message_read(message, "ss", &space, &key) < 0)
        return 0;
    for (Setting* setting : self->settings())
        if (std::strcmp(space, setting->space) == 0 && std::strcmp(key, setting->key) == 0)
            self->take(*setting, message);
    return 0;
}

void DesktopAppearance::take(Setting& setting, sd_bus_message* message) {
    const auto value = readValue(message);
    if (!value)
        return;
    setting.value = *value;
    const Appearance now = appearance();
    if (std::exchange(told_, now) != now)
        changed_(now);
}

Appearance DesktopAppearance::appearance() const {
    return {.isDark = colorScheme_.value == prefersDark,
            .reducesMotion = reducedMotion_.value == prefersLessMotion || animations_.value == 0};
}

} // namespace wakeloft
