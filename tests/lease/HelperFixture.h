#pragma once

#include "twins/AssembledHelper.h"
#include "twins/LeaseTwins.h"

#include <gtest/gtest.h>

#include <array>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace wakeloft {

/// A helper with three clients, on a setting, clocks, a main loop and a timer that tests move by hand.
struct Helper : testing::Test {
    struct Timer final : OneShotTimer {
        std::optional<Seconds> armed;
        std::function<void()> action;

        void arm(Seconds seconds, std::function<void()> what) override {
            armed = seconds;
            action = std::move(what);
        }
        void cancel() override { armed.reset(); }
    };

    const std::string granted;
    const PlatformError busy{"org.example.Busy", 16, "The setting is busy."};
    ManualSleepSetting setting;
    ManualRunLoop mainLoop;
    ManualClocks& clocks = mainLoop.clocks;
    Timer timer;
    AssembledHelper helper{setting, clocks, timer, mainLoop};
    std::vector<std::string>& lines = helper.lines;
    LidLeaseService& service = helper.service;
    std::array<std::unique_ptr<LidLeaseConnection>, 3> clients{
        helper.listener.accept(), helper.listener.accept(), helper.listener.accept()};

    /// The answer to a renewal for `seconds` from now.
    std::string renew(std::size_t client, Seconds seconds = 30) {
        std::string answer = "unanswered";
        clients.at(client)->renewLeaseUntil(
            clocks.wall + seconds,
            [&](const std::optional<std::string>& text) { answer = text.value_or(granted); });
        mainLoop.turn();
        return answer;
    }
    /// Which is answered also where the setting could not be put back.
    void revoke(std::size_t client) {
        int answers = 0;
        clients.at(client)->revokeLease([&] { ++answers; });
        mainLoop.turn();
        EXPECT_EQ(answers, 1);
    }
    void pass(Seconds seconds) {
        clocks.pass(seconds);
        helper.loop.check();
    }
    /// Lets the time of the timer pass, and fires it.
    void fire() {
        ASSERT_TRUE(timer.armed);
        clocks.pass(*std::exchange(timer.armed, std::nullopt));
        timer.action();
    }
};

} // namespace wakeloft
