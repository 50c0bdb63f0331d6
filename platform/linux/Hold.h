#pragma once

#include "support/Error.h"

#include <optional>

namespace wakeloft {

/// How one inhibitor stands with the service that would honour it.
struct Hold {
    enum class State {
        absent, ///< there is no service to ask, or it is gone; `trouble` may say why
        asking, ///< asked again after the service came back; not answered yet
        held,
        failed ///< the service refused; `trouble` says why
    };

    State state = State::absent;
    std::optional<PlatformError> trouble;

    [[nodiscard]] bool isHeld() const { return state == State::held; }
};

} // namespace wakeloft
