#pragma once

#include "lid/InMemoryLidSleepBlocker.h"
#include "lid/LidAwakeController.h"
#include "twins/LidTwins.h"
#include "twins/SessionTwins.h"

#include <gtest/gtest.h>

namespace wakeloft {

/// The controllers that the panel and the question before quitting work on, with all around them by hand.
struct SessionWithDeepwake : testing::Test {
    ManualClocks clocks;
    ManualBlocker blocker;
    ManualScheduler scheduler, renewals, lidDeadline;
    ManualRecheck recheck;
    InMemoryAwakeIntentStore intents{false, std::nullopt};
    AwakeController awake{blocker, intents, clocks, clocks, scheduler, recheck, true};
    InMemoryLidSleepBlocker lidBlocker;
    InMemoryLidAwakeStore lidStore;
    ManualConditions conditions;
    LidAwakeController lid{awake,      lidBlocker, lidStore, conditions,
                           conditions, clocks,     renewals, lidDeadline};
};

} // namespace wakeloft
