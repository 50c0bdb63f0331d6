#pragma once

#include "Appearance.h"
#include "Bus.h"

#include <array>
#include <cstdint>
#include <expected>
#include <functional>
#include <memory>

namespace wakeloft {

/// Whether the desktop asks for dark colours and for less motion, read from the desktop portal and followed
/// live. Light and moving until the first answer, and on desktops without a portal: having none is no
/// failure. Main thread; needs a running sd-event loop.
class DesktopAppearance {
  public:
    /// `changed` is told each change. `bus` is the session's and must outlive this.
    static std::expected<std::unique_ptr<DesktopAppearance>, PlatformError>
    follow(sd_bus* bus, std::function<void(const Appearance&)> changed);

    DesktopAppearance(const DesktopAppearance&) = delete;
    DesktopAppearance& operator=(const DesktopAppearance&) = delete;
    ~DesktopAppearance() = default;

  private:
    struct Setting {
        const char* space;
        const char* key;
        DesktopAppearance* owner;
        std::uint32_t value; ///< until the portal tells it, what it is without one
        BusSlot reading{};
    };

    DesktopAppearance(sd_bus* bus, std::function<void(const Appearance&)> changed);
    std::expected<void, PlatformError> read();
    void take(Setting& setting, sd_bus_message* message);
    [[nodiscard]] Appearance appearance() const;
    std::array<Setting*, 3> settings() { return {&colorScheme_, &reducedMotion_, &animations_}; }
    static int answered(sd_bus_message* message, void* userdata, sd_bus_error*);
    static int settingChanged(sd_bus_message* message, void* userdata, sd_bus_error*);

    sd_bus* bus_;
    std::function<void(const Appearance&)> changed_;
    Appearance told_;
    Setting colorScheme_;
    Setting reducedMotion_;
    Setting animations_;
    BusSlot settingChanges_;
    BusSlot ownerChanges_;
};

} // namespace wakeloft
