#include "MacApp.h"

#include "AppleDoubles.h"
#include "MacAppDoubles.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <utility>

namespace wakeloft {
namespace {

using Calls = std::vector<std::string>;

constexpr const char* blockerEngages =
    "create PreventUserIdleSystemSleep 255 Wakeloft is keeping this Mac awake 0";

std::uint32_t code(std::string_view text) {
    std::uint32_t number = 0;
    for (const char each : text)
        number = number * 256 + static_cast<unsigned char>(each);
    return number;
}

struct MacAppTest : testing::Test {
    MacAppTest() {
        static std::vector<std::unique_ptr<MacAppDoubles>>
            all; // an app, like its process, has no end before it
        apple = {};
        apple.codeSigning = {{14, std::string(8, '\x01') + "ABCDE12345" + '\0'}};
        mac = all.emplace_back(std::make_unique<MacAppDoubles>()).get();
        mac->defaults = {{"com.wakeloft.isAwakeRequested", {true}},
                         {"com.wakeloft.awakeUntil", {1'003'600.0}},
                         {"com.wakeloft.acknowledgedHeatWarning", {true}}};
    }

    /// What came of it.
    static Calls launch() {
        static auto& apps = *new std::vector<MacApp*>; // which have no end
        apps.push_back(new MacApp);
        return taken();
    }

    static Calls taken() { return std::exchange(apple.calls, {}); }
};

TEST_F(MacAppTest, LaunchesInItsOrderAndShowsItselfWhenTheSystemIsReady) {
    EXPECT_EQ(
        launch(),
        Calls({"application delegate", "timer", "rechecks", "read com.wakeloft.isAwakeRequested",
               "read com.wakeloft.awakeUntil", blockerEngages, "helper com.wakeloft.app.lidhelper.plist",
               "connections", "conditions", "timer", "timer", "read com.wakeloft.acknowledgedHeatWarning",
               "login item", "register login item", "read com.wakeloft.presetDurations", "updater"}));
    mac->events.reopened(); // too early
    EXPECT_EQ(taken(), Calls());
    mac->events.launched();
    mac->events.reopened();
    EXPECT_EQ(taken(), Calls({"menu bar item", "open panel"}));
    EXPECT_TRUE(mac->panel->trayContent().icon.isOn);
}

TEST_F(MacAppTest, AsksTheUserAloneBeforeItQuits) {
    launch();
    const std::string question = "ask Quit and stop awake mode? a while in de_CH left in this session.";
    EXPECT_EQ(mac->events.shouldTerminate(), TerminateReply::cancel);
    EXPECT_EQ(taken(), Calls({question}));
    mac->confirms = true;
    EXPECT_EQ(mac->events.shouldTerminate(), TerminateReply::now);
    EXPECT_EQ(taken(), Calls({question}));
    mac->event = QuitAppleEvent{code("aevt"), code("quit"), code("logo")};
    EXPECT_EQ(mac->events.shouldTerminate(), TerminateReply::now);
    mac->event.reset();
    mac->relaunching();
    EXPECT_EQ(mac->events.shouldTerminate(), TerminateReply::now);
    EXPECT_EQ(taken(), Calls());
}

TEST_F(MacAppTest, DeepwakeTalksOnlyToAHelperOfItsOwnTeam) {
    launch();
    mac->events.launched();
    mac->panel->perform({PanelAction::Kind::deepwakeOn, 0});
    const std::string connected = "connect to anchor apple generic and identifier "
                                  "\"com.wakeloft.app.lidhelper\" and certificate leaf[subject.OU] = "
                                  "\"ABCDE12345\"";
    EXPECT_EQ(std::ranges::count(taken(), connected), 1);

    apple.codeSigning.clear(); // signed by nobody
    launch();
    mac->events.launched();
    mac->panel->perform({PanelAction::Kind::deepwakeOn, 0});
    for (const auto& call : taken())
        EXPECT_FALSE(call.starts_with("connect")) << call;
    EXPECT_FALSE(mac->panel->content().deepwake.isOn);
}

TEST_F(MacAppTest, ItsCommandsReachTheSystemAndWhatFailsIsSaid) {
    launch();
    mac->events.launched();
    taken();
    auto& menu = mac->settings->menu;
    mac->linkFailure = PlatformError{"NSCocoaErrorDomain", 256, "There is no browser."};
    for (const auto action : {SettingsAction::checkForUpdates, SettingsAction::showAbout,
                              SettingsAction::quit, SettingsAction::sendFeedback})
        menu.perform(action);
    mac->panel->perform({PanelAction::Kind::openLoginItemsSettings, 0});
    EXPECT_EQ(taken(),
              Calls({"check for updates", "activate", "terminate",
                     "open https://example.org/de/feedback?app=1.4%20(212)&macos=15.0", "open login items"}));
    EXPECT_EQ(menu.content().failure, "There is no browser.");
    EXPECT_EQ(mac->settings->about.content().version, "Version 1.4 (212)");
}

} // namespace
} // namespace wakeloft
