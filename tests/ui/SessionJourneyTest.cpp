#include "ui/PanelJourney.h"

namespace wakeloft {
namespace {

using SessionJourney = PanelJourney;

TEST_F(SessionJourney, TheIconOpensThePanelBesideItAndOnAndOffDoWhatTheySay) {
    startApp();
    openPanel();
    const auto icon = screen::trayIcons();
    const auto header = tree.find("Wakeloft, off", "label");
    ASSERT_TRUE(icon && header);
    const auto place = tree.area(*header);
    EXPECT_NEAR(2 * place.x + place.width, 2 * icon->x + icon->width, 300);
    EXPECT_NEAR(place.y, icon->y + icon->height, 40);
    EXPECT_GT(place.y, icon->y + icon->height);
    EXPECT_TRUE(shows("Your computer can sleep as usual."));
    EXPECT_TRUE(sessionsAre(0));

    click("Turn On");
    EXPECT_TRUE(sessionsAre(1));
    EXPECT_TRUE(tells("on"));
    EXPECT_TRUE(shows("Your computer won't fall asleep on its own. Closing the lid still puts it to sleep."));
    click("Turn Off");
    EXPECT_TRUE(sessionsAre(0));
    EXPECT_TRUE(tells("off"));
}

TEST_F(SessionJourney, EscapeAPressElsewhereAndTheIconCloseThePanelAndNothingElse) {
    startApp();
    openPanel();
    click("Turn On");
    ASSERT_TRUE(sessionsAre(1));
    const auto isClosed = [this] { return comesTrue([this] { return !isPanelOpen(); }); };
    const std::vector<std::function<void()>> ways = {[] { screen::type("Escape"); },
                                                     [] { screen::click(300, 500); },
                                                     [] { screen::click(*screen::trayIcons()); }};
    for (const auto& close : ways) {
        SCOPED_TRACE(&close - ways.data());
        EXPECT_TRUE(isPanelOpen());
        close();
        EXPECT_TRUE(isClosed());
        openPanel();
        EXPECT_TRUE(tells("on")); // it is the same session
    }
    EXPECT_TRUE(sessionsAre(1));
}

TEST_F(SessionJourney, StartedAgainItShowsItselfAsAWindowInFullView) {
    startApp();
    openPanel();
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
    screen::click(300, 790); // a window stays
    click("Turn On");
    EXPECT_TRUE(tells("on"));
    EXPECT_TRUE(sessionsAre(1));
}

TEST_F(SessionJourney, APresetStartsATimedSessionWhoseTimeRunsDown) {
    startApp();
    openPanel();
    const auto header = tree.area(*tree.find("Wakeloft, off"));
    constexpr int moreThanASecondMs = 1200;
    const auto changesWithin = [&](int timeoutMs) {
        const auto before = screen::pixels(header);
        return comesTrue([&] { return screen::pixels(header) != before; }, timeoutMs);
    };
    EXPECT_FALSE(changesWithin(moreThanASecondMs)); // nothing runs down yet

    click("Stay awake for 30 minutes");
    EXPECT_TRUE(sessionsAre(1));
    EXPECT_TRUE(tells("on, 29 minutes left"));
    EXPECT_TRUE(changesWithin(2 * moreThanASecondMs));
    EXPECT_TRUE(isGone("Stay awake for 1 hour"));
    click("Stay awake without a timer");
    EXPECT_TRUE(tells("on"));
    EXPECT_TRUE(shows("Stay awake for 1 hour"));
    EXPECT_TRUE(sessionsAre(1));
    click("Turn Off");
    EXPECT_TRUE(sessionsAre(0));
    EXPECT_TRUE(tells("off"));
}

TEST_F(SessionJourney, WhatCouldNotBeRestoredIsSaidAndCanBeGivenUp) {
    const char* giveUp = "Don't retry when Wakeloft opens";
    LoginManager::control("stop");
    app.putSettings("\"com.wakeloft.isAwakeRequested\": true");
    startApp();
    openPanel();
    EXPECT_TRUE(tells("off"));
    EXPECT_TRUE(shows("Turn On"));
    const auto failure = textThatBegins("Nothing on this computer lets Wakeloft hold off sleep.");
    EXPECT_NE(failure, "");
    EXPECT_TRUE(shows(giveUp));
    press(giveUp);
    EXPECT_TRUE(isGone(giveUp));
    EXPECT_TRUE(isGone(failure));
    EXPECT_TRUE(comesTrue([&] { return app.settingsText().find("isAwakeRequested") == std::string::npos; }));
    LoginManager::control("start");
    click("Turn On");
    EXPECT_TRUE(tells("on"));
    EXPECT_TRUE(sessionsAre(1));
}

} // namespace
} // namespace wakeloft
