#include "lid/XPCLidSleepBlocker.h"
#include "twins/LeaseTwins.h"
#include "twins/LidTwins.h"

#include <gtest/gtest.h>

#include <thread>

namespace wakeloft {
namespace {

const Error unavailable = LidSleepBlockerError::helperUnavailable();
const Error requiresApproval = LidSleepBlockerError::helperRequiresApproval();
const std::optional<Error> confirmed;

struct Client : testing::Test {
    ManualRunLoop loop;
    ManualHelper helper;
    ManualRegistration registration;
    std::unique_ptr<XPCLidSleepBlocker> blocker;
    std::vector<std::optional<Error>> answers;

    void SetUp() override { start("the helper of our team"); }
    void start(std::optional<std::string> requirement) {
        blocker = std::make_unique<XPCLidSleepBlocker>(registration, std::move(requirement),
                                                       LidSleepLease::replyTimeout, helper.factory(), loop);
        answers.clear();
        helper.requests.clear();
    }
    void renew(double until = 100) {
        blocker->renewUntil(Date{until}, [this](const auto& error) { answers.push_back(error); });
    }
    void revoke() {
        blocker->revoke([this](const auto& error) { answers.push_back(error); });
    }
    void reply(const std::optional<std::string>& text = std::nullopt) {
        helper.requests.back().reply(text);
        loop.turn();
    }
    void fail() {
        helper.requests.back().failed();
        loop.turn();
    }
    void grant() {
        renew();
        reply();
    }
};

TEST_F(Client, AsksOneThingAtATimeInTheOrderAsked) {
    renew(1e9 + 0.25);
    revoke();
    renew(7);
    EXPECT_EQ(helper.requirement, "the helper of our team");
    ASSERT_EQ(helper.requests.size(), 1U);
    EXPECT_EQ(helper.requests[0].until, 1e9 + 0.25);

    helper.requests[0].reply(std::nullopt);
    EXPECT_EQ(helper.requests.size(), 1U); // the outcome is not delivered yet
    EXPECT_TRUE(answers.empty());
    loop.turn();
    EXPECT_EQ(answers, std::vector{confirmed});
    ASSERT_EQ(helper.requests.size(), 2U);
    EXPECT_EQ(helper.requests[1].until, std::nullopt);
    EXPECT_FALSE(blocker->isEngaged()); // from the moment that the revoke is sent

    reply();
    ASSERT_EQ(helper.requests.size(), 3U);
    EXPECT_EQ(helper.requests[2].until, 7);
    reply();
    EXPECT_TRUE(blocker->isEngaged());
    EXPECT_EQ(helper.connections, 1);
}

TEST_F(Client, ARefusalIsPassedOnAndKeepsTheConnection) {
    grant();
    renew();
    reply("");
    EXPECT_EQ(answers.back(), Error(LidSleepBlockerError::helperRefused("")));
    EXPECT_FALSE(blocker->isEngaged());
    EXPECT_FALSE(blocker->isResetUnconfirmed());
    grant();
    EXPECT_TRUE(blocker->isEngaged());
    EXPECT_EQ(helper.connections, 1);
}

TEST_F(Client, ABrokenConnectionIsMadeAnew) {
    grant();
    renew();
    fail();
    EXPECT_EQ(answers.back(), unavailable);
    EXPECT_FALSE(blocker->isEngaged());
    EXPECT_FALSE(blocker->isResetUnconfirmed());
    EXPECT_EQ(helper.invalidated, std::set{1});

    revoke(); // nothing can be held where nothing could be reached
    EXPECT_EQ(answers.back(), confirmed);
    EXPECT_EQ(helper.requests.size(), 2U);

    registration.current = LidHelperStatus::requiresApproval;
    renew();
    fail();
    EXPECT_EQ(answers.back(), requiresApproval);
    grant();
    EXPECT_EQ(helper.requests.back().connection, 3);
    EXPECT_EQ(helper.invalidated, (std::set{1, 2}));
}

TEST_F(Client, AHelperThatNeverAnsweredHoldsNothing) {
    renew();
    loop.pass(1.99);
    EXPECT_TRUE(answers.empty());
    loop.pass(0.02);
    EXPECT_EQ(answers, std::vector{std::optional(unavailable)});
    EXPECT_FALSE(blocker->isResetUnconfirmed());
    EXPECT_EQ(helper.invalidated, std::set{1});
    revoke();
    EXPECT_EQ(answers.back(), confirmed);
    EXPECT_EQ(helper.requests.size(), 1U);

    registration.current = LidHelperStatus::requiresApproval;
    renew();
    loop.pass(2);
    EXPECT_EQ(answers.back(), requiresApproval);
}

TEST_F(Client, AHelperThatFellSilentIsInDoubtUntilItConfirms) {
    grant();
    renew();
    loop.pass(2);
    EXPECT_EQ(answers.back(), unavailable);
    EXPECT_TRUE(blocker->isResetUnconfirmed());
    EXPECT_TRUE(helper.invalidated.empty()); // it may only be slow
    renew();
    reply("no");
    EXPECT_TRUE(blocker->isResetUnconfirmed());

    revoke();
    fail();
    EXPECT_EQ(answers.back(), unavailable);
    revoke(); // with no connection left, and yet sent
    EXPECT_EQ(helper.requests.back().connection, 2);
    loop.pass(2);
    EXPECT_EQ(answers.back(), unavailable);
    EXPECT_TRUE(blocker->isResetUnconfirmed());
    revoke();
    EXPECT_EQ(helper.requests.back().connection, 3);
    reply();
    EXPECT_EQ(answers.back(), confirmed);
    EXPECT_FALSE(blocker->isResetUnconfirmed());

    revoke();
    loop.pass(2);
    EXPECT_TRUE(blocker->isResetUnconfirmed());
    grant(); // a lease of ours again
    EXPECT_FALSE(blocker->isResetUnconfirmed());
}

TEST_F(Client, ARevokeOfNothingSendsNothingAndABrokenOneOfAConfirmedLeaseSucceeds) {
    revoke();
    EXPECT_EQ(answers, std::vector{confirmed});
    EXPECT_EQ(helper.connections, 0);
    grant();
    revoke();
    fail();
    EXPECT_EQ(answers.back(), confirmed);
    EXPECT_EQ(helper.invalidated, std::set{1});
}

TEST_F(Client, OnlyTheFirstOutcomeOfARequestCounts) {
    grant();
    renew(1);
    loop.pass(2);
    renew(2);
    ASSERT_EQ(helper.requests.size(), 3U);
    auto& late = helper.requests[1];
    late.reply(std::nullopt); // after 2 s, while the next one waits
    late.failed();
    loop.turn();
    EXPECT_EQ(answers.size(), 2U);
    EXPECT_FALSE(blocker->isEngaged());
    EXPECT_TRUE(helper.invalidated.empty());

    auto& current = helper.requests[2];
    current.reply(std::nullopt);
    current.failed();
    current.reply("no");
    loop.pass(10);
    EXPECT_EQ(answers.size(), 3U);
    EXPECT_TRUE(blocker->isEngaged());
}

TEST_F(Client, RepliesMayComeFromAnyThread) {
    renew();
    std::thread([&] { helper.requests[0].reply(std::nullopt); }).join();
    std::thread([&] { helper.requests[0].failed(); }).join();
    EXPECT_TRUE(answers.empty());
    loop.turn();
    EXPECT_EQ(answers, std::vector{confirmed});
}

TEST_F(Client, WhereNothingCanBeReachedNothingIsAsked) {
    start(std::nullopt);
    EXPECT_EQ(blocker->prepare(), std::unexpected(unavailable));
    renew();
    EXPECT_EQ(answers, std::vector{std::optional(unavailable)}); // at once
    revoke();
    EXPECT_EQ(answers.back(), confirmed);
    EXPECT_EQ(helper.connections, 0);

    start("ours");
    helper.isOutOfReach = true;
    renew();
    renew();
    loop.turn();
    EXPECT_EQ(answers, (std::vector{std::optional(unavailable), std::optional(unavailable)}));
    helper.isOutOfReach = false;
    grant();
    EXPECT_TRUE(blocker->isEngaged());
}

TEST_F(Client, PreparingRegistersTheHelperUnlessItIs) {
    using Status = LidHelperStatus;
    const Error denied = PlatformError{"org.example", 1, "Not now."};
    struct Case {
        Status before;
        Status after;
        std::optional<Error> error;
        std::optional<Error> result;
        int registrations;
    };
    for (const auto& [before, after, error, result, registrations] :
         {Case{Status::enabled, Status::enabled, denied, {}, 0},
          Case{Status::requiresApproval, Status::enabled, {}, requiresApproval, 0},
          Case{Status::notRegistered, Status::enabled, {}, {}, 1},
          Case{Status::notFound, Status::requiresApproval, denied, requiresApproval, 1},
          Case{Status::notFound, Status::requiresApproval, {}, requiresApproval, 1},
          Case{Status::notRegistered, Status::notFound, denied, denied, 1},
          Case{Status::notRegistered, Status::notRegistered, {}, {}, 1}}) {
        registration = {};
        registration.current = before;
        registration.onceRegistered = after;
        registration.error = error;
        const auto prepared = blocker->prepare();
        EXPECT_EQ(prepared ? std::nullopt : std::optional(prepared.error()), result);
        EXPECT_EQ(registration.registrations, registrations);
    }
}

TEST_F(Client, ACompletionMayAskAgainOrEndTheBlocker) {
    blocker->renewUntil(Date{1}, [this](const auto&) {
        renew(2);
        EXPECT_EQ(helper.requests.size(), 1U);
    });
    reply();
    ASSERT_EQ(helper.requests.size(), 2U);
    revoke();
    blocker->renewUntil(Date{3}, [this](const auto&) { blocker.reset(); });
    blocker->renewUntil(Date{4}, [](const auto&) { FAIL(); });
    reply();
    reply();
    reply();
    EXPECT_EQ(blocker, nullptr);
    EXPECT_EQ(helper.requests.size(), 4U);
    EXPECT_EQ(helper.invalidated, std::set{1});

    start("ours");
    renew();
    blocker.reset();
    reply();
    loop.pass(5);
    EXPECT_TRUE(answers.empty());
    start(std::nullopt);
    blocker->renewUntil(Date{1}, [this](const auto&) { blocker.reset(); }); // before the call returns
}

} // namespace
} // namespace wakeloft
