#include "lease/LidSleepLeaseKeeper.h"
#include "twins/LeaseTwins.h"
#include "twins/SessionTwins.h"

#include <gtest/gtest.h>

#include <limits>

namespace wakeloft {
namespace {

using Standing = SleepSettingStanding;
const PlatformError busy{"org.example.Busy", 16, "The setting is busy."};

struct Keeper : testing::Test {
    ManualClocks clocks;
    ManualSleepSetting setting;
    LidSleepLeaseKeeper keeper{setting, clocks, clocks};

    [[nodiscard]] Date in(Seconds seconds) const { return clocks.now() + seconds; }
    /// The writes made since this was asked the last time.
    std::vector<bool> writes() { return std::exchange(setting.writes, {}); }
    void check(const std::vector<bool>& expected) {
        keeper.checkLease();
        EXPECT_EQ(writes(), expected);
    }
};

TEST_F(Keeper, BeginsByPuttingBackWhatAnEarlierHelperLeft) {
    ManualSleepSetting left;
    left.isDisabled = true;
    const LidSleepLeaseKeeper next(left, clocks, clocks);
    EXPECT_FALSE(left.isDisabled);
    EXPECT_FALSE(next.isSleepDisabled());
    EXPECT_EQ(left.reads, 0);
}

TEST_F(Keeper, GrantsThirtySecondsAtTheMostAndNothingForAPastEnd) {
    EXPECT_EQ(keeper.termUntil(in(0)), std::nullopt);
    EXPECT_EQ(keeper.termUntil(in(-1)), std::nullopt);
    EXPECT_EQ(keeper.termUntil(Date{std::numeric_limits<double>::quiet_NaN()}), std::nullopt);
    EXPECT_EQ(keeper.termUntil(in(12)), (LidLeaseTerm{in(12), clocks.uptime() + 12}));
    EXPECT_EQ(keeper.termUntil(in(3600)), (LidLeaseTerm{in(30), clocks.uptime() + 30}));

    keeper.renewUntil(in(3600));
    EXPECT_TRUE(setting.isDisabled);
    keeper.renewUntil(in(0));
    EXPECT_FALSE(setting.isDisabled);
    EXPECT_EQ(keeper.leaseExpiry(), std::nullopt);
}

TEST_F(Keeper, ALeaseLapsesWithWhicheverClockComesFirst) {
    struct Case {
        const char* what;
        Seconds wallJump;
        Seconds asleep;
        Seconds awakeUntilLapse;
    };
    for (const auto& [what, wallJump, asleep, left] :
         {Case{"undisturbed", 0, 0, 30}, Case{"set back an hour", -3600, 0, 30},
          Case{"set forward", 20, 0, 10}, Case{"slept", 0, 25, 5}}) {
        SCOPED_TRACE(what);
        keeper.renewUntil(in(30));
        clocks.moveWall(wallJump);
        clocks.sleep(asleep);
        writes();
        clocks.pass(left - 0.5);
        check({});
        clocks.pass(0.5);
        check({false});
        check({});
        EXPECT_FALSE(setting.isDisabled);
    }
}

TEST_F(Keeper, RetriesAFailedWriteAQuarterOfASecondLater) {
    writes();
    setting.writeError = busy;
    keeper.renewUntil(in(30));
    EXPECT_EQ(keeper.lastError(), busy);
    EXPECT_FALSE(keeper.isSleepDisabled());
    EXPECT_EQ(keeper.retryAt(), clocks.uptime() + 0.25);
    EXPECT_EQ(writes(), std::vector{true});
    clocks.pass(0.125);
    check({});
    clocks.pass(0.125);
    check({true});
    keeper.revoke(); // another value is not held back, and its failure starts its own spacing
    EXPECT_EQ(writes(), std::vector{false});
    clocks.pass(0.125);
    check({});
    setting.writeError.reset();
    clocks.pass(0.125);
    check({false});
    EXPECT_EQ(keeper.lastError(), std::nullopt);
    EXPECT_EQ(keeper.retryAt(), std::nullopt);
    check({});
}

TEST_F(Keeper, AdoptsATurnOffByOthersAndNeverFightsATurnOn) {
    keeper.renewUntil(in(30));
    EXPECT_EQ(keeper.readStanding(), Standing{Standing::AsWritten{}});
    setting.isDisabled = false;
    writes();
    EXPECT_EQ(keeper.readStanding(), Standing{Standing::OffElsewhere{}});
    EXPECT_EQ(keeper.readStanding(), Standing{Standing::AsWritten{}});
    EXPECT_EQ(keeper.leaseExpiry(), std::nullopt);
    check({});

    setting.isDisabled = true;
    for (int time = 0; time < 2; ++time)
        EXPECT_EQ(keeper.readStanding(), Standing{Standing::OnElsewhere{}});
    check({});
    EXPECT_TRUE(setting.isDisabled);
}

TEST_F(Keeper, AFailedReadMattersOnlyWhileNothingIsHeld) {
    setting.readError = busy;
    EXPECT_EQ(keeper.readStanding(), Standing{Standing::Unread{busy.description}});
    keeper.renewUntil(in(30));
    EXPECT_EQ(keeper.readStanding(), Standing{Standing::AsWritten{}});

    setting.readError.reset();
    setting.writeError = busy;
    keeper.revoke();
    setting.isDisabled = false;
    setting.reads = 0;
    EXPECT_EQ(keeper.readStanding(), Standing{Standing::AsWritten{}}); // in the middle of its own write
    EXPECT_EQ(setting.reads, 0);
}

TEST_F(Keeper, InsistsBeforeItEndsWithinWhatItIsGiven) {
    keeper.renewUntil(in(30));
    setting.writeError = busy;
    keeper.revoke();
    writes();
    int pauses = 0;
    EXPECT_FALSE(keeper.revokeBeforeExit([&] { return pauses == 2; }, [&] { ++pauses; }));
    EXPECT_EQ(writes().size(), 3U); // the first one at once, though one has just failed
    EXPECT_TRUE(keeper.revokeBeforeExit([] { return false; }, [&] { setting.writeError.reset(); }));
    EXPECT_FALSE(setting.isDisabled);
    EXPECT_EQ(writes().size(), 2U);

    keeper.renewUntil(in(30));
    EXPECT_TRUE(keeper.revokeBeforeExit([] { return true; }, [] { FAIL(); }));
    EXPECT_FALSE(setting.isDisabled);
}

} // namespace
} // namespace wakeloft
