#pragma once

#include "ApplicationDelegate.h"
#include "AwakePanel.h"
#include "QuitAppleEvent.h"
#include "SettingsMenu.h"

#include <map>
#include <optional>
#include <string>
#include <vector>

namespace wakeloft {

/// Stands in for what of the app is written in Objective-C++, its views included: records in `apple.calls`
/// what it is made for, and lets a test be the user and the system.
struct MacAppDoubles {
    std::map<std::string, DefaultsValue> defaults;
    ApplicationDelegate::Events events; ///< by which the system asks the app
    std::optional<QuitAppleEvent> event;
    bool confirms = false;
    std::function<void()> relaunching; ///< by which the updater tells of it
    AwakePanel* panel = nullptr;       ///< of the item in the menu bar
    SettingsMenu* settings = nullptr;  ///< likewise
};

extern MacAppDoubles mac;

} // namespace wakeloft
