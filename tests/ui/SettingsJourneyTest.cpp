#include "ui/PanelJourney.h"

#include <fstream>

namespace wakeloft {
namespace {

using SettingsJourney = PanelJourney;

TEST_F(SettingsJourney, ThreeStarsMakeThePanelsButtons) {
    const char* fourHours = "Stay awake for 4 hours";
    startApp();
    chooseSetting("Choose preset durations…");
    ASSERT_TRUE(shows("Preset durations"));
    EXPECT_TRUE(is("2 hours", State::checked));
    EXPECT_TRUE(is("4 hours", State::sensitive, false));
    click("4 hours"); // a fourth
    click("2 hours");
    EXPECT_TRUE(is("2 hours", State::checked, false));
    EXPECT_TRUE(is("4 hours", State::sensitive));
    EXPECT_TRUE(is("4 hours", State::checked, false));
    click("4 hours");
    EXPECT_TRUE(is("4 hours", State::checked));
    EXPECT_TRUE(is("2 hours", State::sensitive, false));
    EXPECT_TRUE(shows(fourHours)); // behind the popover, at once
    EXPECT_TRUE(isGone("Stay awake for 2 hours"));
    click("Settings"); // the popover's shadow is above it
    EXPECT_TRUE(isGone("Preset durations"));
    app.stop();
    startApp(); // they are remembered
    click(fourHours);
    EXPECT_TRUE(tells("on, 3 hours, 59 minutes left"));
}

TEST_F(SettingsJourney, NeedsNoMouse) {
    startApp();
    expectFocusAfter("shift+Tab", "Settings");
    expectFocusAfter("space Down", "Choose preset durations…");
    expectFocusAfter("Return", "30 minutes"); // the first that can be changed
    expectFocusAfter("space Tab", "1 hour");
    EXPECT_TRUE(is("30 minutes", State::checked, false));
    expectFocusAfter("Escape", "Settings");
    EXPECT_TRUE(isGone("Preset durations"));
    expectFocusAfter("space Down Down", "About Wakeloft");
    screen::type("Return");
    EXPECT_TRUE(showsTextThatBegins("Version " WAKELOFT_VERSION));
    EXPECT_TRUE(showsTextThatBegins("© 20"));
    expectFocusAfter("Escape", "Settings"); // which closes the popover alone
    screen::type("ctrl+q");                 // nothing is on, nothing is asked
    EXPECT_EQ(app.process().wait(patienceMs), 0);
}

TEST_F(SettingsJourney, FeedbackOpensItsPageAndWhatCannotOpenIsSaid) {
    const auto browser = app.home() / "browser"; // which only writes down what it is to show
    const auto page = app.home() / "page";
    std::ofstream(browser) << "#!/bin/sh\nprintf '%s' \"$*\" >'" << page.string() << "'\n";
    std::filesystem::permissions(browser, std::filesystem::perms::owner_all);
    startApp({"BROWSER=" + browser.string()});
    chooseSetting("Send Feedback");
    EXPECT_TRUE(comesTrue([&] { return textOf(page).starts_with("https://"); }));
    EXPECT_NE(textOf(page).find("app=" WAKELOFT_VERSION), std::string::npos) << textOf(page);
    app.stop();

    startApp({"BROWSER=/nonexistent", "LANGUAGE=de"});
    click("Einstellungen");
    click("Nach Aktualisierungen suchen\u00a0…");
    EXPECT_TRUE(showsTextThatBegins("Es hat sich keine Softwareverwaltung geöffnet.")) << app.output();
    EXPECT_TRUE(app.says("Cannot open appstream://com.wakeloft.Wakeloft"));
}

TEST_F(SettingsJourney, OpenAtLoginIsAnEntryInTheAutostartFolder) {
    const auto entry = app.home() / "config/autostart/com.wakeloft.Wakeloft.desktop";
    startApp();
    EXPECT_FALSE(std::filesystem::exists(entry));
    click("Open at Login");
    EXPECT_TRUE(is("Open at Login", State::checked));
    EXPECT_NE(textOf(entry).find(std::string("\nExec=") + WAKELOFT_APP), std::string::npos) << textOf(entry);
    EXPECT_TRUE(showsTextThatBegins("Wakeloft isn't installed"));
    // What another program changes shows when the panel opens again.
    screen::type("Escape");
    std::filesystem::remove(entry);
    openPanel();
    EXPECT_TRUE(is("Open at Login", State::checked, false));
    press("Open at Login");
    press("Open at Login");
    EXPECT_TRUE(is("Open at Login", State::checked, false));
    EXPECT_FALSE(std::filesystem::exists(entry));
}

} // namespace
} // namespace wakeloft
