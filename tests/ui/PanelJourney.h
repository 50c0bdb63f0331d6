#pragma once

#include "support/Waiting.h"
#include "system/Laptop.h"
#include "system/RunningApp.h"
#include "ui/Screen.h"

#include <gtest/gtest.h>

#include <unistd.h>

#include <cstdio>
#include <string>
#include <vector>

namespace wakeloft {

/// A person at the desktop of a laptop, with Wakeloft's icon in the tray. Elements go by what a screen reader
/// calls them.
struct PanelJourney : testing::Test {
    using State = AccessibleTree::State;
    static constexpr int patienceMs = 10'000;
    static constexpr const char* isWarned = R"("com.wakeloft.acknowledgedHeatWarning": true)";

    RunningApp app{RunningApp::Place::desktop};
    Laptop laptop;
    AccessibleTree tree{app.event()};

    void SetUp() override {
        ASSERT_TRUE(comesTrue([] { return !screen::trayIcons(); })) << "a tray icon of another test";
    }
    void TearDown() override {
        screen::movePointer(2, 600); // no tooltip of the tray into the next test
        if (HasFailure())
            std::printf("Wakeloft said: %s\n", app.output().c_str());
    }

    /// Starts the program with these environment entries, and opens the panel by its icon in the tray.
    void startApp(const std::vector<std::string>& environment = {}) {
        app.start(environment);
        ASSERT_TRUE(app.isReady()) << app.output();
        constexpr int settlingMicroseconds = 100'000;
        const auto isSettled = [] { // the tray moves when its icons change
            const auto before = screen::trayIcons();
            usleep(settlingMicroseconds);
            const auto now = screen::trayIcons();
            return before && now && before->x == now->x;
        };
        ASSERT_TRUE(comesTrue(isSettled)) << "no icon in the tray: " << app.output();
        ASSERT_TRUE(comesTrue([this] { return tree.follow(app.process().pid()); }))
            << "no accessible program";
        openPanel();
    }
    /// Clicks the icon and waits for the panel.
    void openPanel() {
        constexpr int handsPauseMicroseconds =
            250'000; // sooner after closing it nobody means to open it again
        usleep(handsPauseMicroseconds);
        screen::click(screen::trayIcons().value_or(ScreenArea()));
        ASSERT_TRUE(comesTrue([this] { return isPanelOpen(); })) << app.output();
    }
    /// The panel, apart from the menus and questions around it.
    bool isPanelOpen() { return tree.find("Wakeloft").has_value(); } // the window's title, in any language

    /// Waits for the element; false when it does not come.
    bool shows(const std::string& name) {
        return comesTrue([&] { return tree.find(name).has_value(); }).has_value();
    }
    /// What the header tells a screen reader of the session.
    bool tells(const std::string& status) { return shows("Wakeloft, " + status); }
    bool showsTextThatBegins(const std::string& beginning) {
        const auto beginsSo = [&](const auto& element) { return element.name.starts_with(beginning); };
        return comesTrue([&] { return tree.find(beginsSo).has_value(); }).has_value();
    }
    bool isGone(const std::string& name) {
        return comesTrue([&] { return !tree.find(name); }).has_value();
    }
    /// The element is in this state, or soon will be.
    bool is(const std::string& name, State state, bool isSet = true) {
        const auto holds = [&] {
            const auto element = tree.find(name);
            return element && tree.is(*element, state) == isSet;
        };
        return comesTrue(holds).has_value();
    }

    /// By the mouse.
    void click(const std::string& name) {
        EXPECT_TRUE(shows(name)) << name;
        screen::click(tree.area(tree.find(name).value_or(AccessibleTree::Element())));
    }
    /// As a screen reader does for its user.
    void press(const std::string& name) {
        EXPECT_TRUE(shows(name) && tree.press(tree.find(name).value_or(AccessibleTree::Element()))) << name;
    }
    /// By the mouse, from the menu of the open panel.
    void chooseSetting(const std::string& name) {
        click("Settings");
        click(name);
    }
    void expectFocus(const std::string& name) {
        std::string focused; // of a menu and its line, the line
        const auto note = [&](const auto& element) {
            if (tree.is(element, State::focused))
                focused = element.name;
            return false;
        };
        EXPECT_TRUE(comesTrue([&] { return !tree.find(note) && focused == name; }))
            << name << ": " << focused;
    }
    void expectFocusAfter(const char* keys, const std::string& name) {
        screen::type(keys);
        expectFocus(name);
    }
};

} // namespace wakeloft
