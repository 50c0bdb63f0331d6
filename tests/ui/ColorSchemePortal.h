#pragma once

#include "support/FakeService.h"

#include <cstdint>

namespace wakeloft {

/// The desktop's portal, as far as it tells whether dark colours are preferred. It answers while the loop
/// runs.
class ColorSchemePortal {
  public:
    ColorSchemePortal(sd_event* event, bool isDark)
        : isDark_(isDark),
          service_(std::move(openSessionBus(event).value()), "org.freedesktop.portal.Desktop", path,
                   [this](sd_bus_message* call, sd_bus_error*) {
                       return sd_bus_message_is_method_call(call, settings, "Read") > 0
                                  ? sd_bus_reply_method_return(call, "v", "v", "u", value())
                                  : 0;
                   }) {}

    void prefer(bool isDark) {
        isDark_ = isDark;
        EXPECT_GE(sd_bus_emit_signal(service_.bus(), path, settings, "SettingChanged", "ssv",
                                     "org.freedesktop.appearance", "color-scheme", "u", value()),
                  0);
    }

  private:
    static constexpr const char* path = "/org/freedesktop/portal/desktop";
    static constexpr const char* settings = "org.freedesktop.portal.Settings";

    [[nodiscard]] std::uint32_t value() const { return isDark_ ? 1 : 2; }

    bool isDark_;
    FakeService service_;
};

} // namespace wakeloft
