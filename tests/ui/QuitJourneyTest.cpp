#include "ui/PanelJourney.h"

#include <csignal>

namespace wakeloft {
namespace {

struct QuitJourney : PanelJourney {
    void quitByMenu() {
        if (!isPanelOpen())
            openPanel();
        chooseSetting("Quit Wakeloft");
    }
    void expectEnd() {
        EXPECT_EQ(app.process().wait(patienceMs), 0) << app.output();
        EXPECT_EQ(laptop.inhibitors(), 0);
        EXPECT_TRUE(comesTrue([] { return !screen::trayIcons(); }));
    }
};

TEST_F(QuitJourney, ASessionIsAskedAboutFirst) {
    const char* question = "Quit and stop awake mode?";
    startApp();
    click("Turn On");
    ASSERT_TRUE(laptop.waitForSessions(1));
    for (const char* answer : {"Escape", "Tab Return", "Return"}) {
        quitByMenu();
        ASSERT_TRUE(shows(question));
        EXPECT_TRUE(
            shows("Your computer can fall asleep on its own again. Awake mode turns back on the next time "
                  "you open Wakeloft."));
        EXPECT_TRUE(is("Quit", State::focused));
        EXPECT_EQ(laptop.sessions(), 1);
        screen::type(answer);
        EXPECT_TRUE(isGone(question)) << answer;
    }
    expectEnd();
}

TEST_F(QuitJourney, DeepwakeIsAskedAboutInItsOwnWordsAndGivenBackAlsoUnasked) {
    const char* question = "Quit and end Deepwake?";
    for (const bool doesTheSystemsSessionEnd : {false, true}) {
        app.putSettings(isWarned);
        startApp();
        click("Deepwake");
        ASSERT_TRUE(laptop.waitForLocks(1)) << app.output();
        ASSERT_TRUE(is("Deepwake", State::checked));
        quitByMenu();
        ASSERT_TRUE(shows(question));
        click("Cancel");
        EXPECT_TRUE(isGone(question));
        EXPECT_EQ(laptop.locks(), 1);
        quitByMenu();
        ASSERT_TRUE(shows(question));
        if (doesTheSystemsSessionEnd)
            app.process().signal(SIGTERM);
        else
            click("Quit and end Deepwake");
        expectEnd();
    }
}

} // namespace
} // namespace wakeloft
