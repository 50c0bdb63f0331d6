#include "QuitConfirmationDelegate.h"
#include "app/SessionWithDeepwake.h"
#include "twins/LeaseTwins.h"

#include <optional>

namespace wakeloft {
namespace {

using Question = QuitConfirmation;

struct Quit : SessionWithDeepwake {
    ManualRunLoop loop;
    std::vector<Question> questions;
    bool confirms = false;
    bool isSystemQuit = false;
    std::vector<bool> replies;
    std::optional<QuitConfirmationDelegate> delegate{QuitConfirmationDelegate::Shell{
        [this](const Question& question) {
            questions.push_back(question);
            EXPECT_TRUE(questions.size() > 9 || quit() == TerminateReply::cancel); // one question at a time
            return confirms;
        },
        [this] { return isSystemQuit; }, [this](bool quits) { replies.push_back(quits); },
        [this](Seconds seconds, std::function<void()> work) {
            loop.performAfter(seconds, std::move(work));
        }}};

    Quit() { lid.acknowledgeHeatWarning(); }

    TerminateReply quit() { return delegate->applicationShouldTerminate(); }

    /// Deepwake is on, its helper answers nothing more until it is told to, and the user has agreed to quit.
    void quitWithASlowHelper() {
        delegate->attach(awake, lid);
        ASSERT_TRUE(lid.turnOnFor(7199));
        lidBlocker.holdsReplies = true;
        EXPECT_EQ(quit(), TerminateReply::cancel);
        EXPECT_TRUE(lid.isOn()); // the no changed nothing
        confirms = true;
        EXPECT_EQ(quit(), TerminateReply::later);
        EXPECT_FALSE(lid.isOn());
        EXPECT_EQ(quit(), TerminateReply::cancel); // the first request goes on
        EXPECT_EQ(questions, std::vector<Question>(2, {Question::Deepwake{7140}}));
        EXPECT_TRUE(replies.empty());
    }
};

TEST_F(Quit, ASessionIsAskedAboutUnlessItHasRunOutOrTheSystemQuits) {
    awake.turnOnFor(1559);
    EXPECT_EQ(quit(), TerminateReply::now); // knows no session yet
    delegate->attach(awake, lid);
    EXPECT_EQ(quit(), TerminateReply::cancel);
    confirms = true;
    EXPECT_EQ(quit(), TerminateReply::now);
    EXPECT_EQ(questions, std::vector<Question>(2, {Question::AwakeMode{1500}}));
    EXPECT_TRUE(intents.isAwakeRequested()); // the next launch goes on with it

    isSystemQuit = true;
    EXPECT_EQ(quit(), TerminateReply::now);
    isSystemQuit = false;
    clocks.pass(1560); // its timer has not fired yet
    EXPECT_EQ(quit(), TerminateReply::now);
    EXPECT_FALSE(awake.isOn());
    awake.turnOnFor(std::nullopt);
    delegate->relaunchNotice()();
    EXPECT_EQ(quit(), TerminateReply::now);
    EXPECT_EQ(questions.size(), 2U);
}

TEST_F(Quit, WaitsForTheHelperAtMostFiveSeconds) {
    quitWithASlowHelper();
    loop.pass(4.9);
    EXPECT_TRUE(replies.empty());
    loop.pass(0.2);
    EXPECT_EQ(replies, std::vector<bool>{true});
    lidBlocker.answerAll(); // too late to count
    EXPECT_EQ(replies.size(), 1U);
}

TEST_F(Quit, TheHelpersAnswerEndsTheWait) {
    quitWithASlowHelper();
    lidBlocker.answerAll();
    EXPECT_EQ(replies, std::vector<bool>{true});
    EXPECT_FALSE(lidBlocker.isEngaged());
    loop.pass(10);
    EXPECT_EQ(replies.size(), 1U);
}

TEST_F(Quit, AnEndedDelegateIsToldNothing) {
    quitWithASlowHelper();
    const auto notice = delegate->relaunchNotice();
    delegate.reset();
    notice();
    lidBlocker.answerAll();
    loop.pass(10);
    EXPECT_TRUE(replies.empty());
}

TEST_F(Quit, TheSystemIsNeverAskedAndInsistsOnce) {
    delegate->attach(awake, lid);
    ASSERT_TRUE(lid.turnOnFor(7199));
    lidBlocker.holdsReplies = true;
    isSystemQuit = true;
    EXPECT_EQ(quit(), TerminateReply::later);
    EXPECT_FALSE(lid.isOn()); // turned off first
    EXPECT_EQ(quit(), TerminateReply::now);
    loop.pass(10);
    EXPECT_TRUE(replies.empty());
    EXPECT_TRUE(questions.empty());
}

} // namespace
} // namespace wakeloft
