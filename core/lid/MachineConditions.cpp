#include "lid/MachineConditions.h"

namespace wakeloft {

MachineConditionsSnapshot MachineConditions::snapshot() const {
    return {.isOnBattery = isOnBattery(), .hasExternalDisplay = hasExternalDisplay()};
}

LidClosePrecaution::Case LidClosePrecaution::shown(bool isOn, bool hasAcknowledged,
                                                   MachineConditionsSnapshot conditions) {
    if (!hasAcknowledged)
        return beforeFirstUse;
    return isOn && conditions.hasNoHeatPath() ? noHeatPath : none;
}

} // namespace wakeloft
