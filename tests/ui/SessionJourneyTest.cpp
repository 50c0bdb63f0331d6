#include "ui/PanelJourney.h"

namespace wakeloft {
namespace {

using SessionJourney = PanelJourney;

TEST_F(SessionJourney, TheIconOpensThePanelBesideItAndClosingItIsNotTheEnd) {
    startApp();
    const auto icon = screen::trayIcons();
    const auto header = tree.find("Wakeloft, off");
    ASSERT_TRUE(icon && header);
    const auto place = tree.area(*header);
    EXPECT_NEAR(2 * place.x + place.width, 2 * icon->x + icon->width, 300);
    EXPECT_NEAR(place.y, icon->y + icon->height, 40);
    EXPECT_GT(place.y, icon->y + icon->height);
    EXPECT_TRUE(shows("Your computer can sleep as usual."));
    EXPECT_EQ(laptop.sessions(), 0);

    click("Turn On");
    EXPECT_TRUE(laptop.waitForSessions(1));
    EXPECT_TRUE(shows("Your computer won't fall asleep on its own. Closing the lid still puts it to sleep."));
    const std::vector<std::function<void()>> ways = {
        [] { screen::type("Escape"); }, [] { screen::click({300, 500}); }, [&] { screen::click(*icon); }};
    for (const auto& close : ways) {
        SCOPED_TRACE(&close - ways.data());
        close();
        EXPECT_TRUE(comesTrue([this] { return !isPanelOpen(); }));
        openPanel();
        EXPECT_TRUE(tells("on")); // it is the same session
    }
    click("Turn Off");
    EXPECT_TRUE(laptop.waitForSessions(0));
    EXPECT_TRUE(tells("off"));
}

TEST_F(SessionJourney, StartedAgainItShowsItselfAsAWindowInFullView) {
    startApp();
    screen::type("Escape");
    EXPECT_EQ(app.startAgain(), 0);
    ASSERT_TRUE(tells("off"));
    const auto icon = screen::trayIcons();
    ASSERT_TRUE(icon);
    constexpr int titleBar = 20;
    const auto isInView = [&] {
        const auto header = tree.find("Wakeloft, off");
        return header && tree.area(*header).y > icon->y + icon->height + titleBar;
    };
    EXPECT_TRUE(comesTrue(isInView));
    screen::click({300, 790}); // a window stays
    click("Turn On");
    EXPECT_TRUE(tells("on"));
    EXPECT_TRUE(laptop.waitForSessions(1));
}

TEST_F(SessionJourney, APresetStartsATimedSessionWhoseTimeRunsDown) {
    startApp();
    const auto header = tree.area(*tree.find("Wakeloft, off"));
    constexpr int moreThanASecondMs = 1200;
    const auto changesWithin = [&](int timeoutMs) {
        const auto before = screen::pixels(header);
        return comesTrue([&] { return screen::pixels(header) != before; }, timeoutMs).has_value();
    };
    EXPECT_FALSE(changesWithin(moreThanASecondMs)); // nothing runs down yet

    click("Stay awake for 30 minutes");
    EXPECT_TRUE(laptop.waitForSessions(1));
    EXPECT_TRUE(tells("on, 29 minutes left"));
    EXPECT_TRUE(changesWithin(2 * moreThanASecondMs));
    EXPECT_TRUE(isGone("Stay awake for 1 hour"));
    click("Stay awake without a timer");
    EXPECT_TRUE(tells("on"));
    EXPECT_TRUE(shows("Stay awake for 1 hour"));
    EXPECT_EQ(laptop.sessions(), 1);
}

TEST_F(SessionJourney, TheKeyboardReachesEverythingInOrderAndDoesWhatTheMouseDoes) {
    startApp();
    expectFocus("Turn On");
    for (const char* name : {"Stay awake for 30 minutes", "Stay awake for 1 hour", "Stay awake for 2 hours",
                             "I understand the heat warning", "Open at Login", "Settings", "Turn On"})
        expectFocusAfter("Tab", name);
    expectFocusAfter("space", "Turn Off");
    EXPECT_TRUE(tells("on"));
    screen::type("Return");
    EXPECT_TRUE(tells("off"));
    expectFocusAfter("Tab Tab", "Stay awake for 1 hour");
    screen::type("Return");
    EXPECT_TRUE(tells("on, 59 minutes left"));
    expectFocusAfter("shift+Tab shift+Tab shift+Tab", "I understand the heat warning"); // its button has gone
    screen::type("space");
    EXPECT_TRUE(isGone("I understand the heat warning"));
}

TEST_F(SessionJourney, TheMenuInTheTrayDoesWhatItsLinesSay) {
    startApp();
    screen::type("Escape");
    sleep(1); // the panel has faded
    const auto choose = [](const char* keys) {
        const auto icon = screen::trayIcons().value_or(ScreenArea());
        const ScreenArea middleOfMenu = {icon.x, 100, 10, 10};
        const auto desktop = screen::pixels(middleOfMenu);
        constexpr int rightButton = 3;
        screen::click(icon, rightButton);
        EXPECT_TRUE(comesTrue([&] { return screen::pixels(middleOfMenu) != desktop; }));
        screen::type(keys);
        EXPECT_TRUE(comesTrue([&] { return screen::pixels(middleOfMenu) == desktop; }));
    };
    choose("Down Down Down Down Return"); // Stay awake for 1 hour
    EXPECT_TRUE(app.showsTitle("Wakeloft: on, timer running"));
    choose("Down Down Down Return"); // Stay awake without a timer
    EXPECT_TRUE(app.showsTitle("Wakeloft: on"));
    EXPECT_EQ(laptop.sessions(), 1);
    choose("Down Down Return"); // Turn Off
    EXPECT_TRUE(app.showsTitle("Wakeloft: off"));
    choose("Up Return"); // Quit Wakeloft, with nothing to ask
    EXPECT_EQ(app.process().wait(patienceMs), 0);
}

TEST_F(SessionJourney, WhatCouldNotBeRestoredIsSaidAndCanBeGivenUp) {
    const char* giveUp = "Don't retry when Wakeloft opens";
    Laptop::order("control-login-manager stop");
    app.putSettings("\"com.wakeloft.isAwakeRequested\": true");
    startApp();
    EXPECT_TRUE(tells("off"));
    EXPECT_TRUE(showsTextThatBegins("Nothing on this computer lets Wakeloft hold off sleep."));
    press(giveUp);
    EXPECT_TRUE(isGone(giveUp));
    EXPECT_TRUE(
        comesTrue([&] { return textOf(app.settings()).find("isAwakeRequested") == std::string::npos; }));
    Laptop::order("control-login-manager start");
    click("Turn On");
    EXPECT_TRUE(tells("on"));
    EXPECT_TRUE(laptop.waitForSessions(1));
}

} // namespace
} // namespace wakeloft
