#pragma once

#include "AboutPopup.h"
#include "SettingsMenu.h"
#include "SettingsPopup.h"

namespace wakeloft {

/// The settings of the app as the views are given them.
struct SettingsSource {
    SettingsMenu& menu;
    SettingsPopup& presets;
    AboutPopup& about;
};

} // namespace wakeloft
