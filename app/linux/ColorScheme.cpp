#include "ColorScheme.h"

#include <QDebug>

#include <cstdint>
#include <cstring>
#include <utility>

namespace wakeloft {

namespace {

constexpr auto portal = "org.freedesktop.portal.Desktop";
constexpr auto portalPath = "/org/freedesktop/portal/desktop";
constexpr auto settings = "org.freedesktop.portal.Settings";
constexpr auto appearance = "org.freedesktop.appearance";
constexpr auto colorScheme = "color-scheme";
constexpr std::uint32_t prefersDark = 1;

} // namespace

ColorScheme::ColorScheme(sd_bus* bus, std::function<void(bool)> changed)
    : bus_(bus), changed_(std::move(changed)) {}

std::expected<std::unique_ptr<ColorScheme>, PlatformError>
ColorScheme::follow(sd_bus* bus, std::function<void(bool)> changed) {
    std::unique_ptr<ColorScheme> scheme(new ColorScheme(bus, std::move(changed)));
    sd_bus_slot* slot = nullptr;
    const int result = sd_bus_match_signal_async(bus, &slot, portal, portalPath, settings, "SettingChanged",
                                                 settingChanged, nullptr, scheme.get());
    if (result < 0)
        return std::unexpected(busFailure("The desktop's colour scheme cannot be followed", result));
    scheme->settingChanges_.reset(slot);

    auto owner = watchBusName(bus, portal, [self = scheme.get()](const std::string& newOwner) {
        if (newOwner.empty())
            return;
        if (auto asked = self->read(); !asked) // a portal that came late
            qWarning("%s", asked.error().description.c_str());
    });
    if (!owner)
        return std::unexpected(owner.error());
    scheme->ownerChanges_ = std::move(*owner);

    if (auto asked = scheme->read(); !asked)
        return std::unexpected(asked.error());
    return scheme;
}

std::expected<void, PlatformError> ColorScheme::read() {
    sd_bus_slot* slot = nullptr;
    // "Read", not "ReadOne": every version of the portal has it.
    const int result = sd_bus_call_method_async(bus_, &slot, portal, portalPath, settings, "Read", answered,
                                                this, "ss", appearance, colorScheme);
    if (result < 0)
        return std::unexpected(busFailure("The desktop's colour scheme cannot be read", result));
    reading_.reset(slot);
    return {};
}

int ColorScheme::answered(sd_bus_message* message, void* userdata, sd_bus_error*) {
    if (sd_bus_message_is_method_error(message, nullptr) == 0)
        static_cast<ColorScheme*>(userdata)->take(message);
    return 0;
}

int ColorScheme::settingChanged(sd_bus_message* message, void* userdata, sd_bus_error*) {
    const char* space = nullptr;
    const char* key = nullptr;
    if (sd_bus_message_read(message, "ss", &space, &key) >= 0 && std::strcmp(space, appearance) == 0 &&
        std::strcmp(key, colorScheme) == 0)
        static_cast<ColorScheme*>(userdata)->take(message);
    return 0;
}

/// The number may be wrapped in more than one variant. A value of another type says nothing about colours.
void ColorScheme::take(sd_bus_message* message) {
    char type = 0;
    const char* contents = nullptr;
    while (sd_bus_message_peek_type(message, &type, &contents) > 0 && type == SD_BUS_TYPE_VARIANT)
        if (sd_bus_message_enter_container(message, SD_BUS_TYPE_VARIANT, contents) < 0)
            return;
    std::uint32_t value = 0;
    if (type != SD_BUS_TYPE_UINT32 || sd_bus_message_read_basic(message, SD_BUS_TYPE_UINT32, &value) < 0)
        return;
    const bool isDark = value == prefersDark;
    if (isDark == isDark_)
        return;
    isDark_ = isDark;
    changed_(isDark);
}

} // namespace wakeloft
