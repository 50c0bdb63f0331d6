#pragma once

#include "support/FakeService.h"

#include <cstdint>
#include <cstring>

namespace wakeloft {

/// The desktop's portal, as far as it tells what appearance the user prefers. It answers while the loop runs.
class AppearancePortal {
  public:
    AppearancePortal(BusPointer bus, bool isDark)
        : isDark_(isDark),
          service_(std::move(bus), "org.freedesktop.portal.Desktop", path,
                   [this](sd_bus_message* call, sd_bus_error* error) { return answer(call, error); }) {}

    void preferDark(bool isDark) {
        isDark_ = isDark;
        tell("org.freedesktop.appearance", "color-scheme", "u", scheme());
    }
    void animate(bool hasAnimations) {
        hasAnimations_ = hasAnimations;
        tell("org.gnome.desktop.interface", "enable-animations", "b",
             static_cast<std::uint32_t>(hasAnimations));
    }

  private:
    static constexpr const char* path = "/org/freedesktop/portal/desktop";
    static constexpr const char* settings = "org.freedesktop.portal.Settings";

    void tell(const char* space, const char* key, const char* type, std::uint32_t value) const {
        EXPECT_GE(sd_bus_emit_signal(service_.bus(), path, settings, "SettingChanged", "ssv", space, key,
                                     type, value),
                  0);
    }
    [[nodiscard]] std::uint32_t scheme() const { return isDark_ ? 1 : 2; }

    int answer(sd_bus_message* call, sd_bus_error* error) const {
        const char* space = nullptr;
        const char* key = nullptr;
        if (sd_bus_message_is_method_call(call, settings, "Read") <= 0 ||
            sd_bus_message_read(call, "ss", &space, &key) < 0)
            return 0;
        if (std::strcmp(key, "color-scheme") == 0)
            return sd_bus_reply_method_return(call, "v", "v", "u", scheme());
        if (std::strcmp(key, "enable-animations") == 0)
            return sd_bus_reply_method_return(call, "v", "v", "b", static_cast<int>(hasAnimations_));
        return sd_bus_error_set(error, "org.freedesktop.portal.Error.NotFound",
                                "Requested setting not found");
    }

    bool isDark_;
    bool hasAnimations_ = true;
    FakeService service_;
};

} // namespace wakeloft
