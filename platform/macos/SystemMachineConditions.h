#pragma once

#include "lid/MachineConditions.h"

namespace wakeloft {

/// IOKit's power sources and the displays that are online.
class SystemMachineConditions final : public MachineConditions {
  public:
    [[nodiscard]] bool isOnBattery() const override;
    [[nodiscard]] bool hasExternalDisplay() const override;
};

} // namespace wakeloft
