#include "lease/HelperFixture.h"

#include <limits>

namespace wakeloft {
namespace {

using Leases = Helper;

TEST_F(Leases, TheSettingLastsAsLongAsTheLastClientAndThirtySecondsAtTheMost) {
    renew(0, 20);
    EXPECT_EQ(renew(1, 3600), granted);
    revoke(1);
    renew(1, 3600);
    revoke(0);
    pass(29.9);
    EXPECT_TRUE(setting.isDisabled);
    pass(0.2);
    EXPECT_FALSE(setting.isDisabled);
    EXPECT_TRUE(service.holders().empty());

    renew(0);
    renew(1);
    EXPECT_EQ(renew(0, 0), granted); // an end that is not ahead revokes, and no other client's
    EXPECT_EQ(service.holders(), std::set<LidClient>{2});
    clients[1]->invalidated();
    mainLoop.turn();
    EXPECT_FALSE(setting.isDisabled);
}

TEST_F(Leases, LapseWithWhicheverClockComesFirst) {
    struct Case {
        const char* what;
        Seconds wallJump;
        Seconds asleep;
        Seconds left;
    };
    for (const auto& [what, wallJump, asleep, left] :
         {Case{"undisturbed", 0, 0, 30}, Case{"set back an hour", -3600, 0, 30},
          Case{"set forward", 20, 0, 10}, Case{"slept", 0, 25, 5}}) {
        SCOPED_TRACE(what);
        renew(0);
        clocks.moveWall(wallJump);
        clocks.sleep(asleep);
        helper.loop.check();
        EXPECT_DOUBLE_EQ(timer.armed.value_or(0), left);
        setting.writes.clear();
        pass(left - 0.5);
        EXPECT_TRUE(setting.writes.empty());
        pass(0.5);
        pass(0.5);
        EXPECT_EQ(setting.writes, std::vector{false});
        EXPECT_FALSE(timer.armed);
    }
}

TEST_F(Leases, OfASettingTurnedOffElsewhereEachHolderIsToldOnce) {
    for (const bool isFoundByItself : {true, false}) {
        SCOPED_TRACE(isFoundByItself);
        for (const auto client : {0U, 1U, 2U})
            renew(client);
        lines.clear();
        setting.writes.clear();
        helper.loop.checkStanding();
        EXPECT_TRUE(timer.armed); // nothing had changed
        setting.isDisabled = false;
        for (int time = 0; isFoundByItself && time < 2; ++time)
            helper.loop.checkStanding();
        EXPECT_EQ(!timer.armed, isFoundByItself);
        const auto told = LidLeaseService::yieldedReason();
        EXPECT_EQ(renew(0), told);
        EXPECT_EQ(lines, std::vector<std::string>{
                             "lease ended: disablesleep was set to 0 by something else; left at 0"});
        helper.loop.check();
        EXPECT_TRUE(setting.writes.empty()); // not taken again by itself
        revoke(2);                           // told nothing, and forgotten
        EXPECT_EQ(renew(2), granted);
        EXPECT_EQ(renew(1), told);
        EXPECT_EQ(service.holders(), std::set<LidClient>{3});
        EXPECT_EQ(renew(0), granted);
        EXPECT_EQ(renew(1), granted);
    }
}

TEST_F(Leases, WhileTheyAreHeldBackOnlyWhatIsOwedIsTold) {
    renew(0);
    setting.isDisabled = false;
    helper.loop.holdBack("Not now.");
    helper.loop.checkStanding();
    EXPECT_EQ(renew(1), "Not now.");
    EXPECT_EQ(renew(0), LidLeaseService::yieldedReason());
    EXPECT_EQ(renew(0), "Not now.");
    EXPECT_EQ(renew(0, std::numeric_limits<double>::quiet_NaN()), "The lease deadline is not a number.");
    EXPECT_FALSE(setting.isDisabled);
    helper.loop.holdBack(std::nullopt);
    EXPECT_EQ(renew(0), granted);
    EXPECT_EQ(service.holders(), std::set<LidClient>{1});
}

TEST_F(Leases, LeaveASettingAloneThatIsOnOrUnreadable) {
    ManualSleepSetting left;
    left.isDisabled = true;
    const LidSleepLeaseKeeper next(left, clocks, clocks);
    EXPECT_FALSE(left.isDisabled); // unless an earlier helper left it

    setting.isDisabled = true;
    setting.writes.clear();
    for (int time = 0; time < 2; ++time)
        EXPECT_EQ(renew(0), LidLeaseService::alreadyOnReason());
    setting.readError = busy;
    EXPECT_EQ(renew(0), "The sleep setting could not be read, so it was left as it is: The setting is busy.");
    EXPECT_EQ(lines.back(),
              "lease refused: disablesleep could not be read, so it was not written: The setting is busy.");
    EXPECT_TRUE(setting.writes.empty());
    EXPECT_TRUE(service.holders().empty());

    setting.readError.reset();
    setting.isDisabled = false;
    renew(0);
    setting.readError = busy; // no reason to end what it holds itself
    EXPECT_EQ(renew(0), granted);
}

TEST_F(Leases, AFailedWriteIsToldAndTriedAgainEveryQuarterOfASecond) {
    const std::string unwritten = "The sleep setting could not be written: The setting is busy.";
    const std::string notPutBack =
        "The sleep setting could not be put back, and the helper is still trying: The setting is busy.";
    const std::string asWanted = "The sleep setting is as wanted again.";
    setting.writes.clear();
    setting.writeError = busy;
    EXPECT_EQ(renew(0), unwritten);
    EXPECT_EQ(service.holders(), std::set<LidClient>{1}); // still wanted
    EXPECT_DOUBLE_EQ(*timer.armed, 0.25);
    pass(0.125);
    EXPECT_EQ(setting.writes, std::vector{true});
    revoke(0); // another value is not held back, and its failure starts its own spacing
    EXPECT_EQ(setting.writes, (std::vector{true, false}));
    renew(0);
    setting.writeError.reset();
    pass(0.25);
    EXPECT_TRUE(setting.isDisabled);

    setting.writeError = busy;
    revoke(0);
    for (int round = 0; round < 4; ++round)
        fire();
    EXPECT_EQ(lines, (std::vector{unwritten, notPutBack, unwritten, asWanted, notPutBack})); // each once
    setting.isDisabled = false;
    EXPECT_EQ(renew(0), unwritten); // in the middle of its own write nobody else has turned it off
    setting.writeError.reset();
    revoke(0);
    EXPECT_FALSE(timer.armed);
    EXPECT_EQ(lines.back(), asWanted);
}

} // namespace
} // namespace wakeloft
