#pragma once

#include "Bus.h"

#include <expected>
#include <functional>
#include <memory>

namespace wakeloft {

/// Whether the desktop asks for dark colours, read from the desktop portal and followed live. Light until the
/// first answer, and on desktops without a portal: having none is no failure. Main thread; needs a running
/// sd-event loop.
class ColorScheme {
  public:
    /// `changed` is told each change of `isDark()`. `bus` is the session's and must outlive this.
    static std::expected<std::unique_ptr<ColorScheme>, PlatformError>
    follow(sd_bus* bus, std::function<void(bool isDark)> changed);

    ColorScheme(const ColorScheme&) = delete;
    ColorScheme& operator=(const ColorScheme&) = delete;
    ~ColorScheme() = default;

    [[nodiscard]] bool isDark() const { return isDark_; }

  private:
    ColorScheme(sd_bus* bus, std::function<void(bool)> changed);
    std::expected<void, PlatformError> read();
    void take(sd_bus_message* message);
    static int answered(sd_bus_message* message, void* userdata, sd_bus_error*);
    static int settingChanged(sd_bus_message* message, void* userdata, sd_bus_error*);

    sd_bus* bus_;
    std::function<void(bool)> changed_;
    bool isDark_ = false;
    BusSlot reading_;
    BusSlot settingChanges_;
    BusSlot ownerChanges_;
};

} // namespace wakeloft
