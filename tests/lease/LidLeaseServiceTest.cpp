#include "lease/LidLeaseListener.h"
#include "twins/LeaseTwins.h"
#include "twins/SessionTwins.h"

#include <gtest/gtest.h>

#include <limits>
#include <memory>
#include <thread>

namespace wakeloft {
namespace {

const PlatformError busy{"org.example.Busy", 16, "The setting is busy."};
const std::optional<std::string> granted;
const std::optional<std::string> turnedOff =
    "The sleep setting was turned off by something other than Wakeloft, and was left off.";

struct Service : testing::Test {
    ManualClocks clocks;
    ManualSleepSetting setting;
    LidSleepLeaseKeeper keeper{setting, clocks, clocks};
    std::string log;
    std::unique_ptr<LidLeaseService> service =
        std::make_unique<LidLeaseService>(keeper, [this](const std::string& line) { log += line + "\n"; });

    std::optional<std::string> renew(LidClient client, Seconds seconds = 30) {
        return service->renewUntil(clocks.wall + seconds, client);
    }
};

TEST_F(Service, TheSettingLastsAsLongAsTheLastClient) {
    EXPECT_EQ(renew(1, 20), granted);
    EXPECT_EQ(renew(2, 30), granted);
    EXPECT_EQ(service->revokeFrom(2), granted);
    EXPECT_EQ(renew(2, 30), granted);
    EXPECT_EQ(service->revokeFrom(1), granted);
    EXPECT_TRUE(setting.isDisabled);
    clocks.pass(29);
    service->checkLease();
    EXPECT_TRUE(setting.isDisabled);
    clocks.pass(1);
    service->checkLease();
    EXPECT_FALSE(setting.isDisabled);
    EXPECT_TRUE(service->holders().empty());

    renew(1);
    renew(2);
    EXPECT_EQ(renew(1, 0), granted); // an end that is not ahead revokes, and no other client's
    EXPECT_EQ(service->holders(), std::set<LidClient>{2});
    EXPECT_EQ(service->handle(LidLeaseRequest::disconnect(), 2), granted);
    EXPECT_FALSE(setting.isDisabled);
}

TEST_F(Service, TheTwoEndsOfTheLeaseAreMergedEachByItself) {
    renew(1, 30); // uptime +30
    const Seconds uptimeEnd = clocks.uptime() + 30;
    clocks.moveWall(100);
    renew(2, 20); // the later date, the earlier uptime; client 1's date is over
    EXPECT_EQ(service->holders(), std::set<LidClient>{2});
    EXPECT_EQ(keeper.leaseUptimeExpiry(), clocks.uptime() + 20);
    clocks.moveWall(-50);
    renew(1, 30);
    EXPECT_EQ(keeper.leaseExpiry(), clocks.now() + 70); // client 2's
    EXPECT_EQ(keeper.leaseUptimeExpiry(), uptimeEnd);   // client 1's
}

TEST_F(Service, RefusesADeadlineThatIsNoNumberBeforeAnythingElse) {
    renew(1);
    setting.isDisabled = false;
    for (const double deadline :
         {std::numeric_limits<double>::infinity(), -std::numeric_limits<double>::infinity(),
          std::numeric_limits<double>::quiet_NaN()})
        EXPECT_EQ(service->renewUntil(deadline, 1), "The lease deadline is not a number.");
    EXPECT_EQ(service->holders(), std::set<LidClient>{1});
    EXPECT_EQ(setting.reads, 1); // of the first renewal
}

TEST_F(Service, EachHolderIsToldOnceThatTheSettingWasTurnedOff) {
    for (const LidClient client : {1U, 2U, 3U})
        renew(client);
    setting.isDisabled = false;
    setting.writes.clear();
    EXPECT_EQ(renew(1), turnedOff);
    EXPECT_EQ(log, "lease ended: disablesleep was set to 0 by something else; left at 0\n");
    service->checkLease();
    EXPECT_TRUE(setting.writes.empty());
    EXPECT_EQ(service->revokeFrom(3), granted); // told nothing, and forgotten
    EXPECT_EQ(renew(3), granted);
    EXPECT_EQ(renew(2), turnedOff);
    EXPECT_EQ(service->holders(), std::set<LidClient>{3});
    EXPECT_EQ(renew(2), granted);
    EXPECT_EQ(renew(1), granted);
}

TEST_F(Service, LeavesASettingAloneThatIsOnOrUnreadable) {
    setting.isDisabled = true;
    setting.writes.clear();
    EXPECT_EQ(renew(1), "The sleep setting is already on, set by something other than Wakeloft, and was left "
                        "as it is.");
    setting.readError = busy;
    EXPECT_EQ(renew(1), "The sleep setting could not be read, so it was left as it is: The setting is busy.");
    EXPECT_EQ(log,
              "lease refused: disablesleep is already 1 and this helper did not write it; left as it is\n"
              "lease refused: disablesleep could not be read, so it was not written: The setting is busy.\n");
    EXPECT_TRUE(setting.writes.empty());
    EXPECT_TRUE(service->holders().empty());
}

TEST_F(Service, AFailedWriteIsToldAndTriedAgain) {
    setting.writeError = busy;
    EXPECT_EQ(renew(1), "The sleep setting could not be written: The setting is busy.");
    EXPECT_EQ(service->holders(), std::set<LidClient>{1}); // still wanted
    setting.writeError.reset();
    clocks.pass(0.25);
    service->checkLease();
    EXPECT_TRUE(setting.isDisabled);

    setting.writeError = busy;
    service->revokeFrom(1);
    clocks.pass(0.25);
    renew(1);
    renew(2);
    EXPECT_EQ(service->revokeFrom(1), granted); // nothing is to be put back yet
    EXPECT_EQ(
        service->revokeFrom(2),
        "The sleep setting could not be put back, and the helper is still trying: The setting is busy.");
    setting.writeError.reset();
    clocks.pass(0.25);
    service->checkLease();
    EXPECT_FALSE(setting.isDisabled);
}

struct Connections : Service {
    ManualRunLoop loop;
    LidLeaseListener listener{"our app", service->requests(loop)};
};

TEST_F(Connections, AreNumberedFromOneAndServedOnTheMainThreadInOrder) {
    auto first = listener.accept();
    std::unique_ptr<LidLeaseConnection> second;
    std::thread([&] { second = listener.accept(); }).join();
    EXPECT_EQ(first->client(), 1U);
    EXPECT_EQ(second->client(), 2U);
    first.reset();
    EXPECT_EQ(listener.accept()->client(), 3U);

    std::vector<std::string> replies;
    std::thread([&] {
        second->renewLeaseUntil(clocks.wall + 30,
                                [&](const auto& text) { replies.push_back(text.value_or("granted")); });
        second->renewLeaseUntil(std::numeric_limits<double>::infinity(),
                                [&](const auto& text) { replies.push_back(text.value_or("granted")); });
        second->revokeLease([&] { replies.emplace_back("revoked"); });
    }).join();
    EXPECT_TRUE(replies.empty());
    loop.turn();
    EXPECT_EQ(replies,
              (std::vector<std::string>{"granted", "The lease deadline is not a number.", "revoked"}));
}

TEST_F(Connections, ARevokeAnswersAlsoWhenTheSettingCouldNotBePutBack) {
    const auto connection = listener.accept();
    connection->renewLeaseUntil(clocks.wall + 30, [](const auto&) {});
    loop.turn();
    setting.writeError = busy;
    int answers = 0;
    connection->revokeLease([&] { ++answers; });
    loop.turn();
    EXPECT_EQ(answers, 1);
    EXPECT_TRUE(setting.isDisabled);
}

TEST_F(Connections, ALostClientRevokesAndAnEndedServiceIsHarmless) {
    const auto connection = listener.accept();
    connection->renewLeaseUntil(clocks.wall + 30, [](const auto&) {});
    loop.turn();
    EXPECT_TRUE(setting.isDisabled);
    connection->invalidated();
    loop.turn();
    EXPECT_FALSE(setting.isDisabled);
    connection->renewLeaseUntil(clocks.wall + 30, [](const auto&) {});
    service.reset();
    loop.turn();
    EXPECT_FALSE(setting.isDisabled);
}

TEST_F(Connections, NobodyIsAcceptedWithoutARequirement) {
    LidLeaseListener closed(std::nullopt, service->requests(loop));
    EXPECT_EQ(closed.accept(), nullptr);
}

TEST_F(Service, AnotherThreadStopsTheProcess) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_DEATH(
        std::thread([&] { static_cast<void>(service->handle(LidLeaseRequest::revoke(), 1)); }).join(),
        "off the main thread");
}

} // namespace
} // namespace wakeloft
