#include "support/FakeService.h"
#include "ui/PanelJourney.h"

#include <unistd.h>

#include <algorithm>

namespace wakeloft {
namespace {

/// The real program on a desktop without a panel.
struct OldTray : PanelJourney {
    std::unique_ptr<ChildProcess> bar;

    /// Runs a bar that knows nothing but the old tray, in the colour given.
    void showBar(const std::string& color) {
        bar = std::make_unique<ChildProcess>(
            std::vector<std::string>{"/bin/sh", "-c",
                                     "exec trayer --edge top --align right --widthtype request --height 26 "
                                     "--transparent true --alpha 0 "
                                     "--tint " +
                                         color + " 2>/dev/null"});
    }
    /// Behind a bar, or the program opens its window for want of one.
    void start() {
        showBar("0xffffff");
        app.start();
        ASSERT_TRUE(app.isReady()) << app.output();
        ASSERT_TRUE(comesTrue([this] { return tree.follow(app.process().pid()); }));
        ASSERT_TRUE(hasIcon("Wakeloft: off"));
        ASSERT_TRUE(comesTrue([] { return icon().has_value(); }));
    }
    bool hasIcon(const std::string& name, bool isThere = true) {
        return comesTrue([&] { return tree.find(name).has_value() == isThere; }).has_value();
    }
    /// Where it really is: the toolkit does not hear of a tray that moves.
    static std::optional<ScreenArea> icon() { return screen::trayIcons("wakeloft"); }
    static std::string iconPixels() { return screen::pixels(icon().value_or(ScreenArea{0, 0, 1, 1})); }
    /// It stands out from the bar: it has pixels that are nearly black, and nearly white ones.
    static bool isLegible() {
        const auto [low, high] =
            std::ranges::minmax(iconPixels(), {}, [](char byte) { return std::uint8_t(byte); });
        return std::uint8_t(low) < 80 && std::uint8_t(high) > 175;
    }
};

TEST_F(OldTray, ShowsAnIconThatOpensThePanelAndTheMenu) {
    ASSERT_NO_FATAL_FAILURE(start());
    const auto place = *icon();
    EXPECT_GE(place.height, 22);
    screen::click(place);
    ASSERT_TRUE(comesTrue([this] { return isPanelOpen(); }));
    const auto panel = tree.area(*tree.find("Wakeloft"));
    EXPECT_GE(panel.y, place.y + place.height);
    EXPECT_LT(panel.y, place.y + place.height + 20);
    screen::click(place);
    EXPECT_TRUE(comesTrue([this] { return !isPanelOpen(); }));

    constexpr int rightButton = 3;
    screen::click(place, rightButton);
    click("Turn On");
    EXPECT_TRUE(laptop.waitForSessions(1));
    EXPECT_TRUE(hasIcon("Wakeloft: on"));
}

TEST_F(OldTray, ShowsNothingOfTheStateBeforeAlsoUnderACompositor) {
    const ChildProcess compositor({"xfwm4", "--compositor=on"});
    ASSERT_NO_FATAL_FAILURE(start());
    ASSERT_TRUE(comesTrue(isLegible));
    sleep(1); // the bar has settled
    const auto off = iconPixels();
    app.act("turn-on");
    ASSERT_TRUE(comesTrue([&] { return iconPixels() != off; }));
    app.act("turn-off");
    EXPECT_TRUE(comesTrue([&] { return iconPixels() == off; }));
}

TEST_F(OldTray, FollowsTraysThatComeAndGoAndTheirColour) {
    ASSERT_NO_FATAL_FAILURE(start());
    EXPECT_TRUE(comesTrue(isLegible));
    bar.reset();
    EXPECT_TRUE(hasIcon("Wakeloft: off", false));
    showBar("0x101010");
    EXPECT_TRUE(hasIcon("Wakeloft: off"));
    EXPECT_TRUE(comesTrue(isLegible));
    {
        const ServiceThread newTray(
            [](sd_event* event) { // a host of status notifier items that shows nothing
                return std::make_shared<FakeService>(
                    std::move(openSessionBus(event).value()), "org.kde.StatusNotifierWatcher",
                    "/StatusNotifierWatcher", [](sd_bus_message* call, sd_bus_error*) {
                        return sd_bus_message_is_method_call(call, nullptr, "Get") > 0
                                   ? sd_bus_reply_method_return(call, "v", "b", 1)
                                   : sd_bus_reply_method_return(call, nullptr);
                    });
            });
        EXPECT_TRUE(hasIcon("Wakeloft: off", false)) << "shown twice";
    }
    EXPECT_TRUE(hasIcon("Wakeloft: off"));
    EXPECT_EQ(app.output(), "");
}

} // namespace
} // namespace wakeloft
