#include "ui/PanelJourney.h"

namespace wakeloft {
namespace {

struct DeepwakeJourney : PanelJourney {
    void TearDown() override {
        Laptop::setLid(false);
        laptop.settle();
        PanelJourney::TearDown();
    }
};

TEST_F(DeepwakeJourney, TheHeatWarningComesFirstThenTheLidMayBeShut) {
    constexpr double promptMs = 2000;
    const auto controlMs = Laptop::sleepsAfter([] { Laptop::setLid(true); }, promptMs);
    ASSERT_TRUE(controlMs) << "the lid does not put this machine to sleep";
    Laptop::setLid(false);
    laptop.settle();

    startApp();
    openPanel();
    const char* warning = "With the lid shut and no display attached, heat can build up. Keep your computer "
                          "out of bags and other enclosed spaces while it is working.";
    EXPECT_TRUE(shows(warning));
    EXPECT_TRUE(is("Deepwake", AccessibleTree::sensitive, false));
    click("Deepwake");
    press("I understand the heat warning");
    EXPECT_TRUE(isGone(warning));
    EXPECT_TRUE(is("Deepwake", AccessibleTree::sensitive));
    EXPECT_TRUE(
        is("Deepwake", AccessibleTree::checked, false)); // the press on the disabled switch did nothing
    EXPECT_EQ(laptop.locks(), 0);

    click("Deepwake");
    EXPECT_TRUE(laptop.waitForLocks(1));
    EXPECT_TRUE(is("Deepwake", AccessibleTree::checked));
    EXPECT_TRUE(tells("on, 1 hour, 59 minutes left"));
    EXPECT_TRUE(shows("Your computer won't fall asleep until the session ends, even with the lid closed."));
    EXPECT_EQ(Laptop::sleepsAfter([] { Laptop::setLid(true); }, std::max(1000.0, 10 * *controlMs)),
              std::nullopt);
    EXPECT_TRUE(Laptop::sleepsAfter([this] { click("Deepwake"); }, promptMs)); // off, and the lid is shut
    EXPECT_TRUE(is("Deepwake", AccessibleTree::checked, false));
    EXPECT_EQ(laptop.locks(), 0);
    EXPECT_TRUE(sessionsAre(1)); // which was there to be joined
}

} // namespace
} // namespace wakeloft
