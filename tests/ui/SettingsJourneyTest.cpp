#include "ui/PanelJourney.h"

#include <algorithm>
#include <fstream>
#include <sstream>

namespace wakeloft {
namespace {

using State = AccessibleTree::State;
constexpr const char* presets = "Choose preset durations…";
constexpr const char* fourHours = "Stay awake for 4 hours";

struct SettingsJourney : PanelJourney {
    static std::string textOf(const std::filesystem::path& path) {
        std::ostringstream text;
        text << std::ifstream(path).rdbuf();
        return text.str();
    }
    /// A browser that only writes down what it is to show; its environment entry.
    std::string recordingBrowser() {
        const auto program = app.home() / "browser";
        std::ofstream(program) << "#!/bin/sh\nprintf '%s' \"$*\" >'" << shownPage().string() << "'\n";
        std::filesystem::permissions(program, std::filesystem::perms::owner_all);
        return "BROWSER=" + program.string();
    }
    std::filesystem::path shownPage() { return app.home() / "page"; }
};

TEST_F(SettingsJourney, ThreeStarsMakeThePanelsButtons) {
    startApp();
    openPanel();
    EXPECT_FALSE(tree.find(fourHours));
    chooseSetting(presets);
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

    screen::type("Escape"); // closes the popover alone
    EXPECT_TRUE(isGone("Preset durations"));
    EXPECT_TRUE(isPanelOpen());
    click(fourHours);
    EXPECT_TRUE(tells("on, 3 hours, 59 minutes left"));
    app.stop();
    startApp(); // and they are remembered
    openPanel();
    click("Stay awake without a timer");
    EXPECT_TRUE(shows(fourHours));
}

TEST_F(SettingsJourney, AboutTellsTheVersionAndTakesThePlaceOfThePresets) {
    startApp();
    openPanel();
    chooseSetting(presets);
    ASSERT_TRUE(shows("Preset durations"));
    click("Settings"); // the popover's shadow is above it
    EXPECT_TRUE(isGone("Preset durations"));
    chooseSetting("About Wakeloft");
    EXPECT_NE(textThatBegins("Version " WAKELOFT_VERSION), "");
    EXPECT_NE(textThatBegins("© 20"), "");
    EXPECT_TRUE(isPanelOpen());
}

TEST_F(SettingsJourney, FeedbackOpensItsPageAndWhatCannotOpenIsSaid) {
    startApp({recordingBrowser()});
    openPanel();
    chooseSetting("Send Feedback");
    ASSERT_TRUE(comesTrue([&] { return std::filesystem::exists(shownPage()); }));
    EXPECT_TRUE(comesTrue([&] { return textOf(shownPage()).starts_with("https://"); }));
    EXPECT_NE(textOf(shownPage()).find("app=" WAKELOFT_VERSION), std::string::npos) << textOf(shownPage());
    app.stop();

    startApp({"BROWSER=/nonexistent", "LANGUAGE=de"});
    openPanel();
    click("Einstellungen");
    click("Nach Aktualisierungen suchen\u00a0…");
    EXPECT_NE(textThatBegins("Es hat sich keine Softwareverwaltung geöffnet."), "") << app.output();
    EXPECT_TRUE(app.says("Cannot open appstream://com.wakeloft.Wakeloft"));
}

TEST_F(SettingsJourney, OpenAtLoginIsAnEntryInTheAutostartFolder) {
    const auto entry = app.home() / "config/autostart/com.wakeloft.Wakeloft.desktop";
    startApp();
    openPanel();
    EXPECT_FALSE(std::filesystem::exists(entry));
    click("Open at Login");
    EXPECT_TRUE(is("Open at Login", State::checked));
    EXPECT_NE(textOf(entry).find(std::string("\nExec=") + WAKELOFT_APP), std::string::npos) << textOf(entry);
    EXPECT_NE(textThatBegins("Wakeloft isn't installed"), "");
    // What another program changes shows when the panel opens again.
    screen::type("Escape");
    std::filesystem::remove(entry);
    openPanel();
    EXPECT_TRUE(is("Open at Login", State::checked, false));
    press("Open at Login");
    EXPECT_TRUE(comesTrue([&] { return std::filesystem::exists(entry); }));
    press("Open at Login");
    EXPECT_TRUE(comesTrue([&] { return !std::filesystem::exists(entry); }));
    EXPECT_TRUE(is("Open at Login", State::checked, false));
}

} // namespace
} // namespace wakeloft
