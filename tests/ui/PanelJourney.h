#pragma once

#include "system/Laptop.h"
#include "system/RunningApp.h"
#include "ui/AccessibleTree.h"
#include "ui/Screen.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <vector>

namespace wakeloft {

/// A person at the desktop of a laptop, with Wakeloft's icon in the tray. Elements go by what a screen reader
/// calls them.
class PanelJourney : public testing::Test {
  protected:
    void SetUp() override;
    void TearDown() override;

    /// Starts the program with these environment entries, and waits for its icon.
    void startApp(const std::vector<std::string>& environment = {});
    /// Clicks the icon and waits for the panel.
    void openPanel();
    /// The panel, apart from the menus and questions around it.
    [[nodiscard]] bool isPanelOpen();

    /// By the mouse, from the menu of the open panel.
    void chooseSetting(const std::string& name);
    /// Starts the program and leaves it with Deepwake on and the panel open.
    void startDeepwake();

    /// Waits for the element; false when it does not come.
    [[nodiscard]] bool shows(const std::string& name);
    /// Waits for a text that begins so: all of it, or nothing.
    [[nodiscard]] std::string textThatBegins(const std::string& beginning);
    [[nodiscard]] bool isGone(const std::string& name);
    /// The element is in this state, or soon will be.
    [[nodiscard]] bool is(const std::string& name, AccessibleTree::State state, bool isSet = true);
    /// By the mouse.
    void click(const std::string& name);
    /// As a screen reader does for its user.
    void press(const std::string& name);

    /// What the header tells a screen reader of the session.
    [[nodiscard]] bool tells(const std::string& status) { return shows("Wakeloft, " + status); }
    /// The login manager lists so many sessions of ours, or soon will.
    [[nodiscard]] bool sessionsAre(int count);

    RunningApp app{RunningApp::Place::desktop};
    LoginManager loginManager{app.event()};
    Laptop laptop;
    AccessibleTree tree{app.event()};

  private:
    ScreenArea icon_;
};

} // namespace wakeloft
