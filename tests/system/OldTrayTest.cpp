#include "support/FakeService.h"
#include "system/RunningApp.h"
#include "ui/AccessibleTree.h"
#include "ui/Screen.h"

#include <algorithm>
#include <chrono>
#include <thread>

namespace wakeloft {
namespace {

/// A bar that knows nothing but the old tray, in the colour given.
std::unique_ptr<ChildProcess> oldTray(const std::string& color) {
    return std::make_unique<ChildProcess>(std::vector<std::string>{
        "/bin/sh", "-c",
        "exec trayer --edge top --align right --widthtype request --height 26 --transparent true --alpha 0 "
        "--tint " +
            color + " 2>/dev/null"});
}

/// A host of status notifier items that shows nothing.
std::unique_ptr<FakeService> newTray(sd_event* event) {
    return std::make_unique<FakeService>(std::move(openSessionBus(event).value()),
                                         "org.kde.StatusNotifierWatcher", "/StatusNotifierWatcher",
                                         [](sd_bus_message* call, sd_bus_error*) {
                                             return sd_bus_message_is_method_call(call, nullptr, "Get") > 0
                                                        ? sd_bus_reply_method_return(call, "v", "b", 1)
                                                        : sd_bus_reply_method_return(call, nullptr);
                                         });
}

struct OldTray : testing::Test {
    static constexpr const char* button = "push button";

    /// Behind a bar, or the program opens its window for want of one.
    void startApp() {
        app.start();
        ASSERT_TRUE(app.isReady()) << app.output();
        ASSERT_TRUE(comesTrue([this] { return tree.follow(app.process().pid()); }));
    }
    void TearDown() override {
        if (HasFailure())
            std::printf("Wakeloft said: %s\n", app.output().c_str());
    }

    bool comes(const std::function<bool()>& condition) {
        return comesTrue([&] {
            sd_event_run(app.event(), 0);
            return condition();
        });
    }
    bool hasIcon(const std::string& name) {
        return comes([&] { return tree.find(name, button).has_value(); });
    }
    bool hasNoIcon() {
        return comes(
            [&] { return !tree.find("Wakeloft: off", button) && !tree.find("Wakeloft: on", button); });
    }
    /// Where it really is: the toolkit does not hear of a tray that moves.
    static ScreenArea icon() { return screen::trayIcons("wakeloft").value_or(ScreenArea()); }
    /// The darkest and the lightest pixel of the icon, black being 0.
    static std::pair<int, int> shades() {
        const auto bytes = screen::pixels(icon());
        const auto [low, high] = std::ranges::minmax(bytes, {}, [](char byte) { return std::uint8_t(byte); });
        return {std::uint8_t(low), std::uint8_t(high)};
    }

    RunningApp app{RunningApp::Place::desktop};
    LoginManager loginManager{app.event()};
    AccessibleTree tree{app.event()};
};

TEST_F(OldTray, ShowsAnIconThatOpensThePanelAndTheMenu) {
    const auto tray = oldTray("0xffffff");
    ASSERT_NO_FATAL_FAILURE(startApp());
    ASSERT_TRUE(hasIcon("Wakeloft: off"));
    ASSERT_TRUE(comes([] { return icon().width >= 22; }));
    const auto place = icon();
    EXPECT_GE(place.height, 22);

    screen::click(place);
    ASSERT_TRUE(comes([this] { return tree.find("Wakeloft", "filler").has_value(); }));
    const auto panel = tree.area(*tree.find("Wakeloft", "filler"));
    EXPECT_GE(panel.y, place.y + place.height);
    EXPECT_LT(panel.y, place.y + place.height + 20);
    screen::click(place);
    EXPECT_TRUE(comes([this] { return !tree.find("Wakeloft", "filler"); }));

    screen::rightClick(place);
    ASSERT_TRUE(comes([this] { return tree.find("Turn On", "menu item").has_value(); }));
    screen::click(tree.area(*tree.find("Turn On", "menu item")));
    EXPECT_TRUE(loginManager.waitForCount(1, 5000));
    EXPECT_TRUE(hasIcon("Wakeloft: on"));
}

TEST_F(OldTray, ShowsNothingOfTheStateBeforeAlsoUnderACompositor) {
    const ChildProcess compositor({"xfwm4", "--compositor=on"});
    const auto tray = oldTray("0xffffff");
    ASSERT_NO_FATAL_FAILURE(startApp());
    ASSERT_TRUE(hasIcon("Wakeloft: off"));
    ASSERT_TRUE(comes([] { return icon().width >= 22 && shades().first < 80; }));
    std::this_thread::sleep_for(std::chrono::seconds(1)); // the bar has settled
    const auto off = screen::pixels(icon());
    app.act("turn-on");
    ASSERT_TRUE(comes([&] { return screen::pixels(icon()) != off; }));
    app.act("turn-off");
    EXPECT_TRUE(comes([&] { return screen::pixels(icon()) == off; }));
}

TEST_F(OldTray, FollowsTraysThatComeAndGoAndTheirColour) {
    constexpr int dark = 80;
    constexpr int light = 175;
    auto tray = oldTray("0xffffff");
    ASSERT_NO_FATAL_FAILURE(startApp());
    ASSERT_TRUE(hasIcon("Wakeloft: off"));
    EXPECT_TRUE(comes([] { return shades().first < dark && shades().second > light; }));
    tray.reset();
    EXPECT_TRUE(hasNoIcon());

    tray = oldTray("0x101010");
    ASSERT_TRUE(hasIcon("Wakeloft: off"));
    EXPECT_TRUE(comes([] { return shades().first < dark && shades().second > light; }));

    auto host = newTray(app.event());
    EXPECT_TRUE(hasNoIcon()) << "shown twice";
    host.reset();
    EXPECT_TRUE(hasIcon("Wakeloft: off"));
    EXPECT_EQ(app.output(), "");
}

} // namespace
} // namespace wakeloft
