#include "support/AppearancePortal.h"
#include "ui/PanelJourney.h"

#include <cstdlib>

namespace wakeloft {
namespace {

using Appearance = PanelJourney;

TEST_F(Appearance, FollowsTheDesktopsPreferenceForDarkColours) {
    AppearancePortal portal(openSessionBus(app.event()).value(), true);
    startApp();
    const auto header = tree.area(*tree.find("Wakeloft, off"));
    const auto becomesDark = [&](bool isDark) {
        const auto is = [&] {
            sd_event_run(app.event(), 0); // the portal's answers
            double sum = 0;
            const auto bytes = screen::pixels(header);
            for (const char byte : bytes)
                sum += static_cast<unsigned char>(byte);
            const double brightness = sum / static_cast<double>(bytes.size()); // of black 0, of white 255
            return isDark ? brightness < 80 : brightness > 180;
        };
        return comesTrue(is).has_value();
    };
    EXPECT_TRUE(becomesDark(true));
    portal.preferDark(false);
    EXPECT_TRUE(becomesDark(false));
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
    screen::type("shift+Tab space Down Return");
    save("presets");
    screen::type("Escape space Down Down Return");
    save("about");
    screen::type("Escape");
    EXPECT_EQ(app.act("turn-on"), "");
    EXPECT_EQ(app.act("quit"), "");
    save("question");
    app.stop();

    start(isWarned);
    save("off");
    EXPECT_EQ(app.act("start-session", 5025), "");
    save("session");
    EXPECT_EQ(app.act("deepwake-on"), "");
    EXPECT_TRUE(laptop.waitForLocks(1));
    save("deepwake");
    EXPECT_EQ(app.act("quit"), "");
    save("deepwake-question");
    app.stop();

    Laptop::order("control-login-manager stop");
    start(R"("com.wakeloft.isAwakeRequested": true)");
    save("failure");
    Laptop::order("control-login-manager start");
}

std::vector<Look> looks() {
    if (std::getenv("WAKELOFT_PICTURES") == nullptr)
        return {};
    return {{"light", false, {}},
            {"dark", true, {}},
            {"arabic", false, {"LANGUAGE=ar"}},
            {"german", true, {"LANGUAGE=de"}},
            {"large", false, {"QT_SCALE_FACTOR=2"}}};
}

GTEST_ALLOW_UNINSTANTIATED_PARAMETERIZED_TEST(Pictures);
INSTANTIATE_TEST_SUITE_P(Looks, Pictures, testing::ValuesIn(looks()),
                         [](const auto& look) { return std::string(look.param.name); });

} // namespace
} // namespace wakeloft
