#include "status/AwakeExplanation.h"

namespace wakeloft {

AwakeExplanation::Case AwakeExplanation::describing(bool isOn, std::optional<Date> activeUntil,
                                                    bool keepsLidClosedAwake) {
    if (!isOn)
        return sleepsNormally;
    if (keepsLidClosedAwake)
        return activeUntil ? awakeWithLidClosedUntilSessionEnds : awakeWithLidClosedIndefinitely;
    return activeUntil ? awakeUntilSessionEnds : awakeIndefinitely;
}

} // namespace wakeloft
