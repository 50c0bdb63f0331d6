#include "ui/PanelJourney.h"

#include <algorithm>
#include <ranges>

namespace wakeloft {
namespace {

struct KeyboardJourney : PanelJourney {
    /// The name of the element that has the keyboard's focus.
    std::string focused() {
        std::string name;
        for (const auto& element : tree.elements()) // of a menu and its line, the line
            if (tree.is(element, AccessibleTree::focused))
                name = element.name;
        return name;
    }
    void expectFocusAfter(const char* key, const std::string& name) {
        screen::type(key);
        EXPECT_TRUE(comesTrue([&] { return focused() == name; })) << key << ": " << focused();
    }
};

TEST_F(KeyboardJourney, TheTabKeyReachesEverythingInOrderAndBack) {
    startApp();
    openPanel();
    EXPECT_EQ(focused(), "Turn On");
    std::vector<std::string> order = {"Stay awake for 30 minutes",
                                      "Stay awake for 1 hour",
                                      "Stay awake for 2 hours",
                                      "I understand the heat warning",
                                      "Open at Login",
                                      "Settings",
                                      "Turn On"};
    for (const auto& name : order)
        expectFocusAfter("Tab", name);
    std::ranges::reverse(order);
    for (const auto& name : order | std::views::drop(1))
        expectFocusAfter("shift+Tab", name);
}

TEST_F(KeyboardJourney, SpaceAndReturnDoWhatTheMouseDoes) {
    startApp();
    openPanel();
    screen::type("space");
    EXPECT_TRUE(tells("on"));
    EXPECT_EQ(focused(), "Turn Off");
    screen::type("Return");
    EXPECT_TRUE(tells("off"));
    expectFocusAfter("Tab Tab", "Stay awake for 1 hour");
    screen::type("Return");
    EXPECT_TRUE(tells("on, 59 minutes left"));
    expectFocusAfter("shift+Tab shift+Tab", "Open at Login"); // its button has gone
    screen::type("space");
    EXPECT_TRUE(is("Open at Login", AccessibleTree::checked));
    expectFocusAfter("shift+Tab", "I understand the heat warning");
    screen::type("space");
    EXPECT_TRUE(isGone("I understand the heat warning"));
}

TEST_F(KeyboardJourney, TheSettingsNeedNoMouse) {
    app.putSettings(R"("com.wakeloft.presetDurations": [14400, 21600, 28800])");
    startApp();
    openPanel();
    expectFocusAfter("shift+Tab", "Settings");
    expectFocusAfter("space", "Settings");
    expectFocusAfter("Down", "Choose preset durations…");
    expectFocusAfter("Return", "4 hours"); // the first that can be changed
    screen::type("space");
    EXPECT_TRUE(is("4 hours", AccessibleTree::checked, false));
    expectFocusAfter("Tab", "6 hours");
    expectFocusAfter("Escape", "Settings");
    EXPECT_TRUE(isGone("Preset durations"));
    expectFocusAfter("space Down Down", "About Wakeloft");
    screen::type("Return");
    EXPECT_NE(textThatBegins("Version " WAKELOFT_VERSION), "");
    expectFocusAfter("Escape", "Settings");
    screen::type("ctrl+q"); // no session: nothing to ask
    EXPECT_EQ(app.process().wait(5000), 0);
}

} // namespace
} // namespace wakeloft
