#include "QuitConfirmationAlert.h"
#include "QuitConfirmationDelegate.h"
#include "lid/InMemoryLidSleepBlocker.h"
#include "twins/LeaseTwins.h"
#include "twins/LidTwins.h"
#include "twins/SessionTwins.h"
#include "twins/WordingTwins.h"

#include <gtest/gtest.h>

#include <memory>

namespace wakeloft {
namespace {

using Question = QuitConfirmation;

struct Quit : testing::Test {
    ManualClocks clocks;
    ManualBlocker blocker;
    ManualScheduler scheduler;
    ManualRecheck recheck;
    InMemoryAwakeIntentStore intents{false, std::nullopt};
    AwakeController awake{blocker, intents, clocks, clocks, scheduler, recheck, true};
    InMemoryLidSleepBlocker lidBlocker;
    InMemoryLidAwakeStore lidStore{true};
    ManualConditions conditions;
    ManualScheduler leases;
    ManualScheduler deadlines;
    LidAwakeController lid{awake, lidBlocker, lidStore, conditions, conditions, clocks, leases, deadlines};

    ManualRunLoop loop;
    std::vector<Question> questions;
    bool confirms = true;
    bool isSystemQuit = false;
    std::function<void()> whileAsking = [] {};
    std::vector<bool> replies;
    std::unique_ptr<QuitConfirmationDelegate> delegate =
        std::make_unique<QuitConfirmationDelegate>(QuitConfirmationDelegate::Shell{
            [this](const Question& question) {
                questions.push_back(question);
                whileAsking();
                return confirms;
            },
            [this] { return isSystemQuit; }, [this](bool quits) { replies.push_back(quits); },
            [this](Seconds seconds, std::function<void()> work) {
                loop.performAfter(seconds, std::move(work));
            }});

    Quit() { delegate->attach(awake, lid); }

    TerminateReply quit() { return delegate->applicationShouldTerminate(); }
    TerminateReply quitBySystem() {
        isSystemQuit = true;
        const auto reply = quit();
        isSystemQuit = false;
        return reply;
    }
    /// Deepwake on, with a helper that answers nothing more until it is told to.
    void deepwakeWithASlowHelper() {
        ASSERT_TRUE(lid.turnOnFor(7199));
        ASSERT_TRUE(lid.isOn());
        lidBlocker.holdsReplies = true;
    }
};

TEST_F(Quit, WithNothingOnQuitsUnasked) {
    EXPECT_EQ(quit(), TerminateReply::now);
    awake.turnOnFor(60);
    clocks.pass(61); // its timer has not fired yet
    EXPECT_EQ(quit(), TerminateReply::now);
    EXPECT_FALSE(awake.isOn());
    EXPECT_TRUE(questions.empty());

    QuitConfirmationDelegate early({[](const Question&) { return false; }, [] { return false; }, {}, {}});
    awake.turnOnFor(std::nullopt);
    EXPECT_EQ(early.applicationShouldTerminate(), TerminateReply::now); // no controllers yet
    early.attach(awake, lid);
    EXPECT_EQ(early.applicationShouldTerminate(), TerminateReply::cancel);
}

TEST_F(Quit, ASessionIsAskedAboutOnceAtATime) {
    awake.turnOnFor(1559);
    confirms = false;
    whileAsking = [this] {
        EXPECT_TRUE(delegate->isAsking());
        EXPECT_EQ(quit(), TerminateReply::cancel);
    };
    EXPECT_EQ(quit(), TerminateReply::cancel);
    EXPECT_FALSE(delegate->isAsking());
    EXPECT_TRUE(awake.isOn());
    confirms = true;
    EXPECT_EQ(quit(), TerminateReply::now);
    EXPECT_EQ(questions, (std::vector<Question>{{Question::AwakeMode{1500}}, {Question::AwakeMode{1500}}}));
    EXPECT_TRUE(intents.isAwakeRequested()); // the next launch goes on with it
}

TEST_F(Quit, WaitsForTheHelperAtMostFiveSeconds) {
    deepwakeWithASlowHelper();
    confirms = false;
    EXPECT_EQ(quit(), TerminateReply::cancel);
    EXPECT_EQ(questions, (std::vector<Question>{{Question::Deepwake{7140}}}));
    EXPECT_TRUE(lid.isOn()); // the no changed nothing
    confirms = true;
    EXPECT_EQ(quit(), TerminateReply::later);
    EXPECT_FALSE(lid.isOn());
    EXPECT_EQ(quit(), TerminateReply::cancel); // the first request goes on
    EXPECT_EQ(questions.size(), 2U);
    loop.pass(4.9);
    EXPECT_TRUE(replies.empty());
    loop.pass(0.2);
    EXPECT_EQ(replies, std::vector<bool>{true});
    EXPECT_FALSE(delegate->isWaitingForHelper());
    lidBlocker.answerAll(); // too late to count
    EXPECT_EQ(replies.size(), 1U);
}

TEST_F(Quit, TheHelpersAnswerEndsTheWait) {
    deepwakeWithASlowHelper();
    EXPECT_EQ(quit(), TerminateReply::later);
    lidBlocker.answerAll();
    EXPECT_EQ(replies, std::vector<bool>{true});
    EXPECT_FALSE(lidBlocker.isEngaged());
    loop.pass(10);
    EXPECT_EQ(replies.size(), 1U);

    lidBlocker.holdsReplies = false;
    deepwakeWithASlowHelper();
    EXPECT_EQ(quit(), TerminateReply::later);
    delegate.reset();
    lidBlocker.answerAll();
    loop.pass(10);
    EXPECT_EQ(replies.size(), 1U);
}

TEST_F(Quit, TheSystemIsNeverAskedAndInsistsOnce) {
    deepwakeWithASlowHelper();
    EXPECT_EQ(quitBySystem(), TerminateReply::later);
    EXPECT_FALSE(lid.isOn()); // turned off first
    EXPECT_EQ(quitBySystem(), TerminateReply::now);
    loop.pass(10);
    EXPECT_TRUE(replies.empty());
    EXPECT_TRUE(questions.empty());
}

TEST_F(Quit, ARelaunchIsNeverAsked) {
    const auto notice = delegate->relaunchNotice();
    awake.turnOnFor(std::nullopt);
    notice();
    EXPECT_EQ(quit(), TerminateReply::now);
    EXPECT_TRUE(questions.empty());
    delegate.reset();
    notice(); // to nobody
}

TEST(QuitAlert, SaysWhatQuittingLeadsTo) {
    ManualLocalizer localizer;
    const ManualFormatter formatter;
    const QuitConfirmationAlert alert(localizer, formatter, {"de_CH"});
    EXPECT_EQ(alert.makeFor({Question::QuitNow{}}), std::nullopt);
    EXPECT_EQ(alert.makeFor({Question::AwakeMode{1500}}),
              (QuitAlertContent{
                  "Quit and stop awake mode?",
                  "25 min/de_CH left in this session. Your Mac can fall asleep on its own again. Awake "
                  "mode turns back on the next time you open Wakeloft.",
                  {"Quit", "\r"},
                  {"Cancel", "\x1b"},
                  false}));
    localizer.isArabic = true;
    EXPECT_EQ(alert.makeFor({Question::Deepwake{std::nullopt}}),
              (QuitAlertContent{"[D] Quit and end Deepwake?",
                                "[D] Your Mac can sleep again with the lid open or closed. Awake mode turns "
                                "back on the next time you open Wakeloft. Deepwake stays off.",
                                {"[D] Quit and end Deepwake", "\r"},
                                {"Cancel", "\x1b"},
                                true}));
    EXPECT_TRUE(alert.makeFor({Question::Deepwake{60}})
                    ->message.starts_with("1 min/de_CH left in this session. [D] Your Mac"));
}

} // namespace
} // namespace wakeloft
