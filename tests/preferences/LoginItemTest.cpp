#include "preferences/LoginItemController.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace wakeloft {
namespace {

using State = LoginItemState;

const PlatformError denied{"org.example.Denied", 1, "The disk is full."};

/// Records what is asked of it; what it becomes is the test's to say.
struct ManualLoginItem final : LoginItem {
    State current = State::disabled;
    State onceRegistered = State::enabled;
    bool isStable = true;
    bool fails = false;
    std::string calls;

    [[nodiscard]] State state() const override { return current; }
    [[nodiscard]] bool isAtStableLocation() const override { return isStable; }
    std::expected<void, Error> registerItem() override { return becomes(onceRegistered, "register "); }
    std::expected<void, Error> unregisterItem() override { return becomes(State::disabled, "unregister "); }

    std::expected<void, Error> becomes(State state, const char* call) {
        calls += call;
        if (fails)
            return std::unexpected(denied);
        current = state;
        return {};
    }
};

TEST(LoginItem, TheSystemSaysWhatASwitchLedTo) {
    ManualLoginItem item;
    item.onceRegistered = State::requiresApproval;
    LoginItemController controller(item, true);
    EXPECT_EQ(item.calls, ""); // nothing to repair
    int changes = 0;
    const auto observer = controller.changed().subscribe([&] { ++changes; });
    controller.toggle();
    EXPECT_FALSE(controller.isEnabled());
    EXPECT_TRUE(controller.isRegistered());
    EXPECT_TRUE(controller.needsApproval());
    controller.toggle();
    EXPECT_EQ(item.calls, "register unregister ");
    EXPECT_FALSE(controller.isRegistered());
    EXPECT_EQ(changes, 2);

    item.fails = true;
    controller.setEnabled(true);
    EXPECT_EQ(controller.state(), State::disabled);
    EXPECT_EQ(controller.lastFailure(), AwakeFailure(denied));
    EXPECT_EQ(changes, 3);
    controller.refresh(); // nothing new
    EXPECT_EQ(controller.lastFailure(), AwakeFailure(denied));
    item.current = State::enabled; // by another hand
    controller.refresh();
    EXPECT_TRUE(controller.isEnabled());
    EXPECT_EQ(controller.lastFailure(), std::nullopt);
    EXPECT_EQ(changes, 4);

    controller.setEnabled(false);
    EXPECT_TRUE(controller.isEnabled());
    item.fails = false;
    controller.setEnabled(false);
    EXPECT_EQ(controller.lastFailure(), std::nullopt);
}

TEST(LoginItem, AStartRepairsWhatIsOnAndStays) {
    struct Case {
        State state;
        bool isStable;
        bool isAsked;
        std::string calls;
    };
    for (const auto& each : std::vector<Case>{{State::enabled, true, true, "register "},
                                              {State::enabled, false, true, ""},
                                              {State::enabled, true, false, ""},
                                              {State::requiresApproval, true, true, ""}}) {
        ManualLoginItem item;
        item.current = each.state;
        item.isStable = each.isStable;
        const LoginItemController controller(item, each.isAsked);
        EXPECT_EQ(item.calls, each.calls);
    }
    ManualLoginItem item;
    item.current = State::enabled;
    item.fails = true;
    const LoginItemController failed(item, true);
    EXPECT_TRUE(failed.isEnabled());
    EXPECT_EQ(failed.lastFailure(), AwakeFailure(denied));
    item.fails = false;
    item.onceRegistered = State::requiresApproval;
    EXPECT_TRUE(LoginItemController(item, true).needsApproval());
}

} // namespace
} // namespace wakeloft
