#include "preferences/LoginItemController.h"

#include <gtest/gtest.h>

#include <string>

namespace wakeloft {
namespace {

using State = LoginItemState;

const PlatformError denied{"org.example.Denied", 1, "The disk is full."};

/// Records what is asked of it, and leaves registering to the user's approval.
struct ManualLoginItem final : LoginItem {
    State current = State::disabled;
    bool isStable = true;
    bool fails = false;
    int registrations = 0;

    [[nodiscard]] State state() const override { return current; }
    [[nodiscard]] bool isAtStableLocation() const override { return isStable; }
    std::expected<void, Error> registerItem() override {
        ++registrations;
        return become(State::requiresApproval);
    }
    std::expected<void, Error> unregisterItem() override { return become(State::disabled); }

    std::expected<void, Error> become(State state) {
        if (fails)
            return std::unexpected(denied);
        current = state;
        return {};
    }
};

TEST(LoginItem, TheSystemSaysWhatASwitchLedTo) {
    ManualLoginItem item;
    LoginItemController controller(item, true);
    EXPECT_EQ(item.registrations, 0); // nothing to repair
    int changes = 0;
    const auto observer = controller.changed().subscribe([&] { ++changes; });
    controller.toggle();
    EXPECT_FALSE(controller.isEnabled());
    EXPECT_TRUE(controller.needsApproval());
    controller.toggle();
    EXPECT_FALSE(controller.isRegistered());
    EXPECT_EQ(changes, 2);

    item.fails = true;
    controller.setEnabled(true);
    EXPECT_EQ(controller.state(), State::disabled);
    controller.refresh(); // nothing new
    EXPECT_EQ(controller.lastFailure(), AwakeFailure(denied));
    EXPECT_EQ(changes, 3);
    item.current = State::enabled; // by another hand
    controller.refresh();
    EXPECT_TRUE(controller.isEnabled());
    EXPECT_EQ(controller.lastFailure(), std::nullopt);
    EXPECT_EQ(changes, 4);
}

TEST(LoginItem, AStartRepairsOnlyWhatIsOnAndStaysAndTellsAFailure) {
    for (const State state : {State::enabled, State::requiresApproval, State::disabled})
        for (const bool isStable : {true, false})
            for (const bool isAsked : {true, false}) {
                ManualLoginItem item;
                item.current = state;
                item.isStable = isStable;
                item.fails = true;
                const bool isRepaired = state == State::enabled && isStable && isAsked;
                EXPECT_EQ(LoginItemController(item, isAsked).lastFailure().has_value(), isRepaired);
                EXPECT_EQ(item.registrations, isRepaired);
            }
}

} // namespace
} // namespace wakeloft
