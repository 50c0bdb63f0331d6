#include "ui/PanelJourney.h"

#include <csignal>

namespace wakeloft {
namespace {

constexpr int promptMs = 2000;
constexpr int patienceMs = 10'000;

struct QuitJourney : PanelJourney {
    void quitByMenu() {
        if (!isPanelOpen())
            openPanel();
        chooseSetting("Quit Wakeloft");
    }
    void expectEnd() {
        EXPECT_EQ(app.process().wait(patienceMs), 0) << app.output();
        EXPECT_EQ(loginManager.count(), 0);
        EXPECT_TRUE(comesTrue([] { return !screen::trayIcons(); }));
    }
};

TEST_F(QuitJourney, NothingIsAskedWithoutASession) {
    startApp();
    quitByMenu();
    expectEnd();
}

TEST_F(QuitJourney, ASessionIsAskedAboutFirst) {
    startApp();
    openPanel();
    click("Turn On");
    ASSERT_TRUE(sessionsAre(1));
    for (const char* refusal : {"Escape", "Tab Return"}) {
        quitByMenu();
        ASSERT_TRUE(shows("Quit and stop awake mode?"));
        EXPECT_TRUE(
            shows("Your computer can fall asleep on its own again. Awake mode turns back on the next time "
                  "you open Wakeloft."));
        EXPECT_TRUE(is("Quit", AccessibleTree::focused));
        screen::type(refusal);
        EXPECT_TRUE(isGone("Quit and stop awake mode?")) << refusal;
        EXPECT_EQ(app.process().wait(0), -1);
        EXPECT_TRUE(sessionsAre(1));
    }
    quitByMenu();
    ASSERT_TRUE(shows("Quit and stop awake mode?"));
    screen::type("Return");
    expectEnd();
}

TEST_F(QuitJourney, DeepwakeIsAskedAboutInItsOwnWordsAndGivenBack) {
    ASSERT_NO_FATAL_FAILURE(startDeepwake());
    quitByMenu();
    ASSERT_TRUE(shows("Quit and end Deepwake?"));
    click("Cancel");
    EXPECT_TRUE(isGone("Quit and end Deepwake?"));
    EXPECT_EQ(laptop.locks(), 1);
    quitByMenu();
    click("Quit and end Deepwake");
    expectEnd();
}

TEST_F(QuitJourney, TheEndOfTheSystemsSessionAsksNothingAndGivesDeepwakeBack) {
    for (const bool isAskingAlready : {false, true}) {
        ASSERT_NO_FATAL_FAILURE(startDeepwake());
        if (isAskingAlready) {
            quitByMenu();
            ASSERT_TRUE(shows("Quit and end Deepwake?"));
        }
        app.process().signal(SIGTERM);
        EXPECT_EQ(app.process().wait(promptMs), 0) << app.output();
        expectEnd();
    }
}

} // namespace
} // namespace wakeloft
