#include "lid/XPCLidSleepBlocker.h"
#include "twins/LeaseTwins.h"
#include "twins/LidTwins.h"

#include <gtest/gtest.h>

namespace wakeloft {
namespace {

const Error unavailable = LidSleepBlockerError::helperUnavailable();
const Error requiresApproval = LidSleepBlockerError::helperRequiresApproval();
const std::optional<Error> confirmed;

struct Client : testing::Test {
    /// What becomes of a request.
    using Fate = std::function<void(ManualHelper::Request&)>;
    const Fate granted = [](auto& request) { request.reply(std::nullopt); };
    const Fate refused = [](auto& request) { request.reply("no"); };
    const Fate broken = [](auto& request) { request.failed(); };
    const Fate silent = [](auto&) {};

    ManualRunLoop loop;
    ManualHelper helper;
    ManualRegistration registration;
    std::vector<std::optional<Error>> answers;
    const LidSleepBlocker::Completion answered = [this](const auto& error) { answers.push_back(error); };
    std::unique_ptr<XPCLidSleepBlocker> blocker = made("the helper of our team");

    std::unique_ptr<XPCLidSleepBlocker> made(std::optional<std::string> requirement) {
        return std::make_unique<XPCLidSleepBlocker>(registration, std::move(requirement),
                                                    LidSleepLease::replyTimeout, helper.factory(), loop);
    }
    std::optional<Error> renew(const Fate& fate) {
        blocker->renewUntil(Date{100}, answered);
        return settle(fate);
    }
    std::optional<Error> revoke(const Fate& fate) {
        blocker->revoke(answered);
        return settle(fate);
    }
    std::optional<Error> settle(const Fate& fate) {
        if (!helper.requests.empty())
            fate(helper.requests.back());
        loop.pass(LidSleepLease::replyTimeout);
        EXPECT_EQ(answers.size(), 1U);
        return std::exchange(answers, {}).at(0);
    }
    void reply(std::size_t request) {
        helper.requests.at(request).reply(std::nullopt);
        loop.turn();
    }
};

TEST_F(Client, AsksOneThingAtATimeAndACompletionMayAskAgainOrEndIt) {
    blocker->renewUntil(Date{1e9 + 0.25}, [this](const auto&) {
        EXPECT_TRUE(blocker->isEngaged());
        blocker->renewUntil(Date{7}, [this](const auto&) { blocker.reset(); });
        blocker->renewUntil(Date{8}, [](const auto&) { FAIL(); });
    });
    blocker->revoke(answered);
    EXPECT_EQ(helper.requirement, "the helper of our team");
    EXPECT_EQ(helper.requests.size(), 1U);
    EXPECT_EQ(helper.requests[0].until, 1e9 + 0.25);
    helper.requests[0].reply(std::nullopt);
    EXPECT_FALSE(blocker->isEngaged()); // not delivered yet
    loop.turn();
    ASSERT_EQ(helper.requests.size(), 2U);
    EXPECT_EQ(helper.requests[1].until, std::nullopt);
    EXPECT_FALSE(blocker->isEngaged()); // from the moment that the revoke is sent
    reply(1);
    EXPECT_EQ(answers, std::vector{confirmed});
    EXPECT_EQ(helper.requests.at(2).until, 7);
    reply(2);
    EXPECT_EQ(blocker, nullptr);
    EXPECT_EQ(helper.requests.size(), 3U);
    EXPECT_EQ(helper.connections, 1);
    EXPECT_EQ(helper.invalidated, std::set{1});

    blocker = made("ours");
    blocker->renewUntil(Date{9}, answered);
    blocker.reset();
    reply(3);
    loop.pass(5);
    EXPECT_EQ(answers.size(), 1U);
}

TEST_F(Client, AHelperThatRefusesIsKeptAndOneThatBreaksOrNeverAnswersHoldsNothing) {
    EXPECT_EQ(revoke(granted), confirmed);
    EXPECT_EQ(helper.connections, 0); // there was nothing to give back
    EXPECT_EQ(renew(granted), confirmed);
    EXPECT_EQ(renew(refused), Error(LidSleepBlockerError::helperRefused("no")));
    EXPECT_FALSE(blocker->isEngaged());
    EXPECT_EQ(renew(granted), confirmed);
    EXPECT_EQ(helper.connections, 1);

    EXPECT_EQ(renew(broken), unavailable);
    EXPECT_FALSE(blocker->isEngaged());
    EXPECT_EQ(renew(silent), unavailable);
    registration.current = LidHelperStatus::requiresApproval;
    EXPECT_EQ(renew(broken), requiresApproval);
    EXPECT_EQ(renew(silent), requiresApproval);
    EXPECT_EQ(helper.connections, 4); // each of them made anew
    EXPECT_EQ(helper.invalidated, (std::set{1, 2, 3, 4}));
    EXPECT_FALSE(blocker->isResetUnconfirmed());
    const auto sent = helper.requests.size();
    EXPECT_EQ(revoke(silent), confirmed);
    EXPECT_EQ(helper.requests.size(), sent);

    EXPECT_EQ(renew(granted), confirmed);
    EXPECT_EQ(revoke(broken), confirmed);
    EXPECT_TRUE(helper.invalidated.contains(5));
}

TEST_F(Client, AHelperThatFellSilentIsInDoubtUntilItConfirms) {
    EXPECT_EQ(renew(granted), confirmed);
    blocker->renewUntil(Date{100}, answered);
    loop.pass(LidSleepLease::replyTimeout - 0.01);
    EXPECT_TRUE(answers.empty());
    EXPECT_EQ(settle(silent), unavailable);
    EXPECT_TRUE(blocker->isResetUnconfirmed());
    EXPECT_TRUE(helper.invalidated.empty()); // it may only be slow
    renew(refused);
    EXPECT_TRUE(blocker->isResetUnconfirmed());

    EXPECT_EQ(revoke(broken), unavailable);
    EXPECT_EQ(revoke(silent), unavailable); // with no connection left, and yet sent
    EXPECT_EQ(helper.connections, 2);
    EXPECT_TRUE(blocker->isResetUnconfirmed());
    EXPECT_EQ(revoke(granted), confirmed);
    EXPECT_EQ(helper.connections, 3);
    EXPECT_FALSE(blocker->isResetUnconfirmed());

    EXPECT_EQ(revoke(silent), unavailable);
    EXPECT_TRUE(blocker->isResetUnconfirmed());
    EXPECT_EQ(renew(granted), confirmed); // a lease of ours again
    EXPECT_FALSE(blocker->isResetUnconfirmed());
}

TEST_F(Client, WhereNothingCanBeReachedNothingIsAsked) {
    helper.isOutOfReach = true;
    EXPECT_EQ(renew(silent), unavailable);
    helper.isOutOfReach = false;
    EXPECT_EQ(renew(granted), confirmed);

    blocker = made(std::nullopt);
    EXPECT_EQ(blocker->prepare(), std::unexpected(unavailable));
    EXPECT_EQ(renew(granted), unavailable);
    EXPECT_EQ(revoke(granted), confirmed);
    EXPECT_EQ(helper.connections, 1);
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
          Case{Status::notFound, Status::notFound, denied, denied, 1}}) {
        registration = {};
        registration.current = before;
        registration.onceRegistered = after;
        registration.error = error;
        const auto prepared = blocker->prepare();
        EXPECT_EQ(prepared ? std::nullopt : std::optional(prepared.error()), result);
        EXPECT_EQ(registration.registrations, registrations);
    }
}

} // namespace
} // namespace wakeloft
