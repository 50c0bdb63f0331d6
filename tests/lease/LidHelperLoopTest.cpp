#include "lease/HelperFixture.h"
#include "lease/LidHelperService.h"

#include <thread>

namespace wakeloft {
namespace {

TEST_F(Helper, AReplacedOneEndsWhenNothingIsItsToPutBack) {
    renew(0, 20);
    helper.loop.programFound(LidHelperFileWatch::Finding::replaced("next"));
    EXPECT_EQ(helper.ends, 0);
    setting.writeError = busy;
    revoke(0);
    EXPECT_EQ(helper.ends, 0); // the reset is in doubt
    setting.writeError.reset();
    pass(0.25);
    EXPECT_EQ(helper.ends, 1);
    helper.loop.check();
    EXPECT_EQ(helper.ends, 1);
}

TEST_F(Helper, AStopPutsTheSettingBackWithinItsWindow) {
    renew(0, 20);
    setting.writeError = busy;
    revoke(0);
    const Seconds start = clocks.uptime();
    EXPECT_FALSE(helper.loop.stop());
    const Seconds end = clocks.uptime();
    EXPECT_GE(end - start, LidHelperService::stopRetryWindow);
    EXPECT_LE(end - start + LidSleepLease::writeTimeout, LidHelperService::exitTimeout);
    EXPECT_FALSE(timer.armed);
    setting.writeError.reset();
    EXPECT_TRUE(helper.loop.stop()); // at once, though a write has just failed
    EXPECT_EQ(clocks.uptime(), end);
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

} // namespace
} // namespace wakeloft
