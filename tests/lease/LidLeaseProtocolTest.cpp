#include "lease/LidHelperRefusal.h"
#include "lease/LidHelperService.h"
#include "lease/RigLeaseFile.h"
#include "lease/XPCReply.h"
#include "twins/LeaseTwins.h"

#include <gtest/gtest.h>

#include <limits>
#include <thread>

namespace wakeloft {
namespace {

TEST(Refusal, SurvivesTheTripAsItsTextAlone) {
    using R = LidHelperRefusal;
    const std::pair<R, const char*> refusals[] = {
        {R::settingUnreadable("no\n"), "The sleep setting could not be read, so it was left as it is: no\n"},
        {R::settingUnwritten(""), "The sleep setting could not be written: "},
        {R::settingNotPutBack("\xCC\x81"), // an accent that would join the blank before it
         "The sleep setting could not be put back, and the helper is still trying: \xCC\x81"},
        {R::deadlineNotANumber(), "The lease deadline is not a number."},
        {R::settingOnElsewhere(),
         "The sleep setting is already on, set by something other than Wakeloft, and was left as it is."},
        {R::settingTurnedOffElsewhere(),
         "The sleep setting was turned off by something other than Wakeloft, and was left off."}};
    for (const auto& [refusal, text] : refusals) {
        EXPECT_EQ(refusal.reason(), text);
        EXPECT_EQ(R::fromReason(text), refusal);
    }
    for (const char* text :
         {"", " The sleep setting could not be written: x", "The lease deadline is not a number"}) {
        EXPECT_EQ(R::fromReason(text), R{R::Unrecognized{text}});
        EXPECT_EQ(R::fromReason(text).reason(), text);
    }
}

TEST(Reply, ThreadsThatFinishTogetherDeliverOneOutcome) {
    using Outcome = XPCReply::Outcome;
    ManualRunLoop loop;
    int delivered = 0;
    constexpr int rounds = 200;
    for (int round = 0; round < rounds; ++round) {
        const auto reply = XPCReply::make(loop, [&](const Outcome&) { ++delivered; });
        std::thread answer([&] { reply->finish(Outcome::replied(std::nullopt)); });
        reply->finish(Outcome::failed());
        answer.join();
    }
    loop.turn();
    EXPECT_EQ(delivered, rounds);
}

TEST(HelperService, DemandsOurTeamAndNothingThatASignatureCannotHave) {
    const auto requirement = LidHelperService::codeRequirement;
    EXPECT_EQ(requirement("com.wakeloft.app", "ABCDE12345"),
              "anchor apple generic and identifier \"com.wakeloft.app\" and certificate leaf[subject.OU] = "
              "\"ABCDE12345\"");
    EXPECT_EQ(requirement("com.wakeloft.app", std::nullopt), std::nullopt);
    for (const auto* team : {"", "ABCDE1234", "ABCDE123456", "ABCDe12345", "ABCDE1234\""})
        EXPECT_EQ(requirement("com.wakeloft.app", team), std::nullopt) << team;
    for (const auto* identifier : {"", "com wakeloft", "com.wake\"loft", "caf\xC3\xA9"})
        EXPECT_EQ(requirement(identifier, "ABCDE12345"), std::nullopt) << identifier;
}

TEST(RigLeaseFile, HoldsOneFiniteNumberThatReadsBackTheSame) {
    using Limits = std::numeric_limits<double>;
    EXPECT_EQ(RigLeaseFile::encode(Date{1731700000}), "1731700000.0");
    for (const double seconds : {1731700000.25, -0.1, 0.1 + 0.2, Limits::max(), Limits::denorm_min()})
        EXPECT_EQ(RigLeaseFile::decode(RigLeaseFile::encode(Date{seconds})), Date{seconds}) << seconds;
    EXPECT_EQ(RigLeaseFile::decode(" \t\r\n+1.5e3\r\n "), Date{1500});
    for (const char* text : {"", " \n", "nan", "inf", "12abc", "1 2", "1e999"})
        EXPECT_EQ(RigLeaseFile::decode(text), std::nullopt) << text;
}

} // namespace
} // namespace wakeloft
