#include "lease/HelperFixture.h"
#include "lease/LidHelperService.h"

#include <thread>

namespace wakeloft {
namespace {

TEST_F(Helper, HasOneTimerForWhatComesNextAndNoneAtRest) {
    EXPECT_FALSE(timer.armed);
    renew(0, 20);
    renew(1, 5);
    EXPECT_DOUBLE_EQ(*timer.armed, 5);
    fire();
    EXPECT_TRUE(setting.isDisabled);
    EXPECT_DOUBLE_EQ(*timer.armed, 15);
    fire();
    EXPECT_FALSE(setting.isDisabled);
    EXPECT_FALSE(timer.armed);
    renew(0, 20);
    revoke(0);
    EXPECT_FALSE(timer.armed);
}

TEST_F(Helper, AReplacedOneEndsWhenNothingIsItsToPutBack) {
    const auto replaced = LidHelperFileWatch::Finding::replaced("next");
    renew(0, 20);
    helper.loop.programFound(replaced);
    EXPECT_EQ(helper.ends, 0);
    setting.writeError = busy;
    revoke(0);
    EXPECT_EQ(helper.ends, 0); // the reset is in doubt
    setting.writeError.reset();
    pass(0.25);
    EXPECT_EQ(helper.ends, 1);
    helper.loop.check();
    EXPECT_EQ(helper.ends, 1);
    helper.loop.programFound(replaced); // at rest: at once
    EXPECT_EQ(helper.ends, 2);
}

TEST_F(Helper, AStopPutsTheSettingBackWithinItsWindow) {
    renew(0, 20);
    setting.writeError = busy;
    revoke(0);
    setting.writes.clear();
    const Seconds start = clocks.uptime();
    EXPECT_FALSE(helper.loop.stop());
    EXPECT_GE(helper.paused, LidHelperService::stopRetryWindow);
    EXPECT_LE(clocks.uptime() - start + LidSleepLease::writeTimeout, LidHelperService::exitTimeout);
    EXPECT_FALSE(timer.armed);
    setting.writeError.reset();
    helper.paused = 0;
    EXPECT_TRUE(helper.loop.stop()); // at once, though a write has just failed
    EXPECT_EQ(helper.paused, 0);
    EXPECT_FALSE(setting.isDisabled);
    EXPECT_EQ(renew(0, 20), "unanswered");
    EXPECT_FALSE(setting.isDisabled);
}

TEST_F(Helper, ConnectionsAreNumberedFromOneAndServedOnTheMainThreadInOrder) {
    std::unique_ptr<LidLeaseConnection> next;
    std::thread([&] { next = helper.listener.accept(); }).join();
    EXPECT_EQ(clients[0]->client(), 1U);
    EXPECT_EQ(next->client(), 4U);
    next.reset();
    EXPECT_EQ(helper.listener.accept()->client(), 5U); // never one that was another's
    EXPECT_EQ(LidLeaseListener(std::nullopt, helper.loop.requests(mainLoop)).accept(), nullptr);

    std::string replies;
    std::thread([&] {
        clients[0]->renewLeaseUntil(clocks.wall + 30, [&](const auto&) { replies += "renewed "; });
        clients[0]->revokeLease([&] { replies += "revoked"; });
    }).join();
    EXPECT_EQ(replies, "");
    mainLoop.turn();
    EXPECT_EQ(replies, "renewed revoked");
}

TEST_F(Helper, AnotherThreadStopsTheProcess) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_DEATH(std::thread([&] { static_cast<void>(service.handle(LidLeaseRequest::revoke(), 1)); }).join(),
                 "off the main thread");
}

} // namespace
} // namespace wakeloft
