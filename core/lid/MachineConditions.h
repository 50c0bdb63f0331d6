#pragma once

#include <array>
#include <cstdint>
#include <functional>

namespace wakeloft {

/// What matters of the machine while its lid is closed, at one moment.
struct MachineConditionsSnapshot {
    bool isOnBattery = false;
    bool hasExternalDisplay = false; ///< any display online besides the built-in one

    /// Closed, on battery and with no display of its own to drive it has nowhere to shed heat through.
    [[nodiscard]] constexpr bool hasNoHeatPath() const { return isOnBattery && !hasExternalDisplay; }

    bool operator==(const MachineConditionsSnapshot&) const = default;
};

/// Reads the conditions afresh each time. Main thread. What cannot be read gives no heat warning: not on
/// battery, a display attached.
class MachineConditions {
  public:
    virtual ~MachineConditions() = default;

    [[nodiscard]] virtual bool isOnBattery() const = 0;
    [[nodiscard]] virtual bool hasExternalDisplay() const = 0;
    [[nodiscard]] MachineConditionsSnapshot snapshot() const;
};

/// Fixed conditions, for previews and tests.
class StaticMachineConditions final : public MachineConditions {
  public:
    StaticMachineConditions(bool isOnBattery, bool hasExternalDisplay)
        : isOnBattery_(isOnBattery), hasExternalDisplay_(hasExternalDisplay) {}

    [[nodiscard]] bool isOnBattery() const override { return isOnBattery_; }
    [[nodiscard]] bool hasExternalDisplay() const override { return hasExternalDisplay_; }

  private:
    bool isOnBattery_;
    bool hasExternalDisplay_;
};

/// Tells when the conditions may have changed. Main thread.
class MachineConditionsNotifier {
  public:
    virtual ~MachineConditionsNotifier() = default;

    /// Only the latest handler is told.
    virtual void observe(std::function<void()> handler) = 0;
};

/// What the panel warns of about closing the lid.
struct LidClosePrecaution {
    enum Case : std::uint8_t {
        none,
        beforeFirstUse, ///< the heat warning has not been acknowledged yet; wins over everything
        noHeatPath
    };
    static constexpr std::array<Case, 3> all = {none, beforeFirstUse, noHeatPath};

    static Case shown(bool isOn, bool hasAcknowledged, MachineConditionsSnapshot conditions);
};

} // namespace wakeloft
