#include "lease/LidHelperRefusal.h"
#include "lease/LidHelperService.h"
#include "lease/XPCReply.h"
#include "twins/LeaseTwins.h"

#include <gtest/gtest.h>

#include <thread>

namespace wakeloft {
namespace {

TEST(Refusal, SurvivesTheTripAsItsTextAlone) {
    using R = LidHelperRefusal;
    const std::pair<R, std::string> refusals[] = {
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
    for (const char* text : {"", " The sleep setting could not be written: x",
                             "The sleep setting could not be written:", "The lease deadline is not a number",
                             "The lease deadline is not a number. "}) {
        EXPECT_EQ(R::fromReason(text), R{R::Unrecognized{text}});
        EXPECT_EQ(R::fromReason(text).reason(), text);
    }
}

TEST(Reply, DeliversTheFirstOutcomeOnceAndOnTheMainLoop) {
    using Outcome = XPCReply::Outcome;
    ManualRunLoop loop;
    std::vector<Outcome> outcomes;
    const auto deliver = [&](const Outcome& outcome) { outcomes.push_back(outcome); };

    auto reply = XPCReply::make(loop, deliver);
    reply->expireAfter(2);
    loop.pass(1.9);
    reply->finish(Outcome::replied("no"));
    EXPECT_TRUE(outcomes.empty());
    reply->finish(Outcome::failed());
    loop.pass(5);
    EXPECT_EQ(outcomes, std::vector{Outcome::replied("no")});

    reply = XPCReply::make(loop, deliver);
    reply->expireAfter(2);
    const std::weak_ptr ended = reply;
    reply.reset(); // the time limit keeps it until then
    loop.pass(2);
    EXPECT_EQ(outcomes.back(), Outcome::unanswered());
    EXPECT_TRUE(ended.expired());
    EXPECT_EQ(outcomes.size(), 2U);
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
    EXPECT_NE(requirement("A-9.z", "0000000000"), std::nullopt);
    EXPECT_EQ(requirement("com.wakeloft.app", std::nullopt), std::nullopt);
    for (const auto* team : {"", "ABCDE1234", "ABCDE123456", "ABCDe12345", "ABCDE1234\"", "ABCDE1234\xC3"})
        EXPECT_EQ(requirement("com.wakeloft.app", team), std::nullopt) << team;
    for (const auto* identifier :
         {"", "com wakeloft", "com.wake\"loft", "com.wakeloft\n", "caf\xC3\xA9", "a_b"})
        EXPECT_EQ(requirement(identifier, "ABCDE12345"), std::nullopt) << identifier;
}

TEST(HelperService, RunsAtLoadUnderItsOwnName) {
    using Value = PropertyListValue;
    const std::string label = "com.wakeloft.app.lidhelper";
    const Value::Dictionary expected = {
        {"Label", Value{label}},
        {"BundleProgram", Value{"Contents/Helpers/WakeloftLidHelper"}},
        {"MachServices", Value{Value::Dictionary{{label, Value{true}}}}},
        {"AssociatedBundleIdentifiers", Value{Value::Array{Value{"com.wakeloft.app"}}}},
        {"RunAtLoad", Value{true}},
        {"KeepAlive", Value{true}}};
    EXPECT_EQ(LidHelperService::launchdPlist(), Value{expected});
    EXPECT_EQ(LidHelperService::plistName, label + ".plist");
    EXPECT_LT(LidHelperService::stopRetryWindow + LidHelperService::stopRetryPause,
              LidHelperService::exitTimeout);
}

TEST(HelperService, SaysWhatStartsAndWhatIsNotKnownOfIt) {
    const auto line = LidHelperService::startLine;
    const auto version = LidHelperService::Version::checked("1.4", "27");
    EXPECT_EQ(line("/a", "/a", "0f", version), "helper starting: Wakeloft 1.4 (27), cdhash 0f, from /a");
    EXPECT_EQ(line("/a", "/b", "0f", std::nullopt),
              "helper starting: Wakeloft version unknown, cdhash 0f, from /a, started as /b");
    EXPECT_EQ(
        line(std::nullopt, "/b", std::nullopt, version),
        "helper starting: Wakeloft version unknown, cdhash unknown, from a path that could not be read, "
        "started as /b");
    EXPECT_NE(LidHelperService::Version::checked(std::string(64, 'z'), "A.9-_"), std::nullopt);
    for (const std::string& text : {std::string(), std::string(65, '1'), std::string("1 2"),
                                    std::string("\xC3\xA9"), std::string("1\0", 2)}) {
        EXPECT_EQ(LidHelperService::Version::checked("1", text), std::nullopt);
        EXPECT_EQ(LidHelperService::Version::checked(text, "1"), std::nullopt);
    }
}

} // namespace
} // namespace wakeloft
