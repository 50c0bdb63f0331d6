#pragma once

#include "AwakePanel.h"
#include "SettingsSource.h"

#include <memory>

namespace wakeloft {

/// The app's item in the menu bar, and the panel that opens below it. Both follow what they are made of by
/// themselves. Main thread, with the application object made before.
class MenuBarItem {
  public:
    /// `panel` and what `settings` refers to must outlive it.
    MenuBarItem(AwakePanel& panel, const SettingsSource& settings);
    MenuBarItem(const MenuBarItem&) = delete;
    MenuBarItem& operator=(const MenuBarItem&) = delete;
    ~MenuBarItem();

    /// Opens the panel, as a press on the item does, or brings the open one to the front.
    void openPanel();

    /// Brings the app to the front and gives the keyboard to the panel, where that is open.
    void activate();

  private:
    struct Views;
    std::unique_ptr<Views> views_;
    Subscription panelChanged_;
};

} // namespace wakeloft
