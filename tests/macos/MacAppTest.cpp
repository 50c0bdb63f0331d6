#include "MacApp.h"

#include "AppleDoubles.h"
#include "MacAppDoubles.h"

#include <gtest/gtest.h>

#include <utility>

namespace wakeloft {
namespace {

using Calls = std::vector<std::string>;

constexpr std::uint32_t code(std::string_view text) {
    std::uint32_t number = 0;
    for (const char each : text)
        number = number * 256 + static_cast<unsigned char>(each);
    return number;
}

struct MacAppTest : testing::Test {
    MacAppTest() {
        apple = {};
        apple.codeSigning = {{14, std::string(8, '\x01') + "ABCDE12345" + '\0'}};
        mac = {};
        mac.defaults = {{"com.wakeloft.isAwakeRequested", {true}},
                        {"com.wakeloft.awakeUntil", {1'003'600.0}},
                        {"com.wakeloft.acknowledgedHeatWarning", {true}}};
    }

    /// What came of it.
    static Calls launch() {
        static auto& apps = *new std::vector<MacApp*>; // which have no end
        apps.push_back(new MacApp);
        const auto calls = taken();
        mac.events.reopened(); // too early to show anything
        mac.events.launched();
        return calls;
    }
    static Calls taken() { return std::exchange(apple.calls, {}); }
};

TEST_F(MacAppTest, LaunchesAndRefreshesInItsOrder) {
    EXPECT_EQ(launch(),
              Calls({"application delegate", "rechecks", "read com.wakeloft.isAwakeRequested",
                     "read com.wakeloft.awakeUntil",
                     "create PreventUserIdleSystemSleep 255 Wakeloft is keeping this Mac awake 0",
                     "helper com.wakeloft.app.lidhelper.plist", "conditions",
                     "read com.wakeloft.acknowledgedHeatWarning", "power source", "displays", "login item",
                     "register login item", "login item", "read com.wakeloft.presetDurations", "updater"}));
    mac.events.reopened();
    EXPECT_EQ(taken(), Calls({"menu bar item", "open panel"}));
    EXPECT_TRUE(mac.panel->trayContent().icon.isOn);
    taken();
    mac.panel->opened();
    EXPECT_EQ(taken(),
              Calls({"login item", "read com.wakeloft.acknowledgedHeatWarning", "power source", "displays"}));
}

TEST_F(MacAppTest, AsksTheUserAloneBeforeItQuits) {
    launch();
    const auto ends = [](TerminateReply reply, const Calls& calls) {
        taken();
        EXPECT_EQ(mac.events.shouldTerminate(), reply);
        EXPECT_EQ(taken(), calls);
    };
    const Calls question{"ask Quit and stop awake mode? a while in de_CH left in this session."};
    constexpr auto logOut = code("logo");
    for (const QuitAppleEvent& other : {QuitAppleEvent{code("misc"), code("quit"), logOut},
                                        {code("aevt"), code("rapp"), logOut},
                                        {code("aevt"), code("quit"), code("ogol")},
                                        {code("aevt"), code("quit"), std::nullopt}}) {
        mac.event = other;
        ends(TerminateReply::cancel, question);
    }
    mac.confirms = true;
    ends(TerminateReply::now, question);
    for (const auto* reason : {"quia", "rlgo", "rest", "shut", "logo"}) {
        mac.event = QuitAppleEvent{code("aevt"), code("quit"), code(reason)};
        ends(TerminateReply::now, {});
    }
    mac.event.reset();
    mac.relaunching();
    ends(TerminateReply::now, {});
    mac.settings->perform(SettingsAction::quit);
    EXPECT_EQ(taken(), Calls({"terminate"}));
}

TEST_F(MacAppTest, DeepwakeTalksOnlyToAHelperOfItsOwnTeam) {
    const auto connections = [] {
        launch();
        mac.panel->perform({PanelAction::Kind::deepwakeOn, 0});
        auto calls = taken();
        std::erase_if(calls, [](const std::string& call) { return !call.starts_with("connect"); });
        return calls;
    };
    EXPECT_EQ(connections(), Calls({"connect to anchor apple generic and identifier "
                                    "\"com.wakeloft.app.lidhelper\" and certificate leaf[subject.OU] = "
                                    "\"ABCDE12345\""}));
    apple.codeSigning.clear(); // signed by nobody
    EXPECT_EQ(connections(), Calls());
    EXPECT_FALSE(mac.panel->content().deepwake.isOn);
}

} // namespace
} // namespace wakeloft
