#pragma once

#include "lid/LidAwakeController.h"
#include "preferences/LoginItemController.h"
#include "preferences/PresetDurationsController.h"
#include "session/AwakeController.h"

namespace wakeloft {

/// The four controllers that live as long as the app, in the order in which they are made.
struct Controllers {
    AwakeController& awake;
    LidAwakeController& lid;
    LoginItemController& loginItem;
    PresetDurationsController& presets;
};

} // namespace wakeloft
