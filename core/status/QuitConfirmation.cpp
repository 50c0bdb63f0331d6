#include "status/QuitConfirmation.h"

#include <cmath>

namespace wakeloft {

QuitConfirmation QuitConfirmation::asked(bool isAwakeOn, bool keepsLidClosedAwake,
                                         std::optional<Seconds> remaining) {
    std::optional<Seconds> told;
    if (remaining && std::isfinite(*remaining) && *remaining >= 60)
        told = std::floor(*remaining / 60) * 60;
    if (keepsLidClosedAwake)
        return {Deepwake{told}};
    if (!isAwakeOn)
        return {QuitNow{}};
    return {AwakeMode{told}};
}

} // namespace wakeloft
