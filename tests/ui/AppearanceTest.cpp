#include "support/AppearancePortal.h"
#include "ui/PanelJourney.h"

#include <unistd.h>

#include <cstdlib>
#include <fstream>

namespace wakeloft {
namespace {

struct Appearance : PanelJourney {
    /// Of black 0, of white 255.
    static double brightness(const ScreenArea& area) {
        const auto bytes = screen::pixels(area);
        double sum = 0;
        for (const char byte : bytes)
            sum += static_cast<unsigned char>(byte);
        return sum / static_cast<double>(bytes.size());
    }
};

TEST_F(Appearance, FollowsTheDesktopsPreferenceForDarkColours) {
    constexpr double dark = 80;
    constexpr double light = 180;
    AppearancePortal portal(openSessionBus(app.event()).value(), true);
    startApp();
    openPanel();
    const auto header = tree.area(*tree.find("Wakeloft, off"));
    const auto becomes = [&](auto condition) {
        return comesTrue([&] {
            sd_event_run(app.event(), 0); // the portal's answers
            return condition(brightness(header));
        });
    };
    EXPECT_TRUE(becomes([](double shown) { return shown < dark; }));
    portal.preferDark(false);
    EXPECT_TRUE(becomes([](double shown) { return shown > light; }));
}

struct Look {
    const char* name;
    bool isDark;
    std::vector<std::string> environment;
};

/// By hand: WAKELOFT_PICTURES=FOLDER ./test -- 'Looks*' saves the screen with all that the program shows.
struct Pictures : Appearance, testing::WithParamInterface<Look> {
    AppearancePortal portal{openSessionBus(app.event()).value(), GetParam().isDark};

    void start(const std::string& settings) {
        portal.animate(false); // each picture of something that has come to rest
        app.putSettings(settings);
        startApp(GetParam().environment);
        openPanel();
    }
    /// Restores the panel where a question or a press has closed it.
    void reopen() {
        if (!isPanelOpen())
            openPanel();
    }
    void save(const std::string& name) {
        constexpr int settlingMs = 400;
        screen::movePointer(2, 600);
        runUntil(app.event(), [] { return false; }, settlingMs);
        screen::save(std::string(std::getenv("WAKELOFT_PICTURES")) + "/" + GetParam().name + "-" + name +
                     ".png");
    }
};

TEST_P(Pictures, OfEverything) {
    start("");
    save("first-use");
    EXPECT_EQ(app.act("turn-on"), "");
    save("on");
    screen::type("Tab Tab");
    EXPECT_EQ(app.act("start-session", 5025), "");
    save("timer");
    screen::type("shift+Tab space");
    save("menu");
    screen::type("Down Return");
    save("presets");
    screen::type("Escape space Down Down Return");
    save("about");
    screen::type("Escape");
    EXPECT_EQ(app.act("quit"), "");
    save("question");
    screen::type("Escape");
    reopen();
    screen::type("shift+Tab space Down Down Down Return"); // no software centre
    sleep(2);
    save("settings-trouble");
    app.stop();

    start(R"("com.wakeloft.acknowledgedHeatWarning": true)");
    EXPECT_EQ(app.act("deepwake-on"), "");
    EXPECT_TRUE(laptop.waitForLocks(1));
    const std::filesystem::path battery = "/sys/class/power_supply/BAT0"; // in the rig's own file system
    std::error_code none;
    std::filesystem::create_directories(battery, none);
    std::ofstream(battery / "type") << "Battery";
    std::ofstream(battery / "status") << "Discharging";
    screen::type("Escape");
    openPanel();
    save("deepwake");
    EXPECT_EQ(app.act("quit"), "");
    save("deepwake-question");
    app.stop();
    std::filesystem::remove_all(battery, none);

    Laptop::order({"polkit", "no"});
    LoginManager::control("stop");
    start(R"("com.wakeloft.acknowledgedHeatWarning": true, "com.wakeloft.isAwakeRequested": true)");
    EXPECT_EQ(app.act("deepwake-on"), "");
    screen::type("shift+Tab shift+Tab space");
    save("failures");
    screen::type("Escape");
    EXPECT_EQ(app.startAgain(), 0);
    save("window");
    LoginManager::control("start");
    Laptop::order({"polkit", "yes"});
}

std::vector<Look> looks() {
    if (std::getenv("WAKELOFT_PICTURES") == nullptr)
        return {};
    return {{"light", false, {}},
            {"dark", true, {}},
            {"arabic", false, {"LANGUAGE=ar"}},
            {"german", true, {"LANGUAGE=de"}},
            {"russian", false, {"LANGUAGE=ru"}},
            {"large", false, {"QT_SCALE_FACTOR=2"}}};
}

GTEST_ALLOW_UNINSTANTIATED_PARAMETERIZED_TEST(Pictures);
INSTANTIATE_TEST_SUITE_P(Looks, Pictures, testing::ValuesIn(looks()),
                         [](const auto& look) { return std::string(look.param.name); });

} // namespace
} // namespace wakeloft
