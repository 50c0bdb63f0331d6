#pragma once

#include "Bus.h"
#include "lid/MachineConditions.h"

#include <array>
#include <functional>
#include <optional>
#include <string>

namespace wakeloft {

/// Whether the desktop itself handles the lid, and sends the computer to sleep when it is shut. KDE and XFCE
/// do their own handling, and act on the moment of shutting only; elsewhere the login manager does it.
/// Nothing here waits, and no service is started. Main thread.
class DesktopLidAction {
  public:
    /// `sessionBus` may be null (no session bus). `conditions` tell which of XFCE's two settings counts.
    /// `trouble` is told what a desktop that is there does not answer, and not twice running. `sessionBus`
    /// and `conditions` must outlive this object.
    DesktopLidAction(sd_bus* sessionBus, const MachineConditions& conditions,
                     std::function<void(const PlatformError&)> trouble);

    /// As the desktop told last, also while it is silent. Asks it again, for the next time.
    bool isSleep();

  private:
    struct Call {
        const char* service;
        const char* path;
        const char* interface;
        const char* method;
        std::array<const char*, 2> arguments; ///< strings, up to the first null
    };
    struct XfceSettings {
        bool isLidLeftAlone = false; ///< to the login manager
        bool sleepsOnBattery = false;
        bool sleepsOnMains = false;
    };

    void ask();
    void askLater(const Call& call, BusSlot& pending, BusHandler answered);
    void kdeAnswered(sd_bus_message* reply);
    void xfceFound(sd_bus_message* reply);
    void xfceAnswered(sd_bus_message* reply);
    void fail(const PlatformError& error);

    sd_bus* bus_;
    const MachineConditions& conditions_;
    std::function<void(const PlatformError&)> trouble_;
    bool kdeSleeps_ = false;
    std::optional<XfceSettings> xfce_; ///< nothing where XFCE does not handle the lid
    std::string latestTrouble_;
    std::array<BusSlot, 2> watches_;
    BusSlot kdePending_;
    BusSlot xfcePending_;
};

} // namespace wakeloft
