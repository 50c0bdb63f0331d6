#include "ui/PanelJourney.h"

#include <csignal>

namespace wakeloft {
namespace {

using DeepwakeJourney = PanelJourney;

TEST_F(DeepwakeJourney, TheHeatWarningComesFirst) {
    startApp();
    const char* warning = "With the lid shut and no display attached, heat can build up. Keep your computer "
                          "out of bags and other enclosed spaces while it is working.";
    EXPECT_TRUE(shows(warning));
    EXPECT_TRUE(is("Deepwake", State::sensitive, false));
    click("Deepwake");
    press("I understand the heat warning");
    EXPECT_TRUE(isGone(warning));
    EXPECT_TRUE(is("Deepwake", State::sensitive));
    EXPECT_TRUE(is("Deepwake", State::checked, false)); // the press on the disabled switch did nothing
    EXPECT_EQ(laptop.locks(), 0);

    click("Deepwake");
    EXPECT_TRUE(laptop.waitForLocks(1));
    EXPECT_TRUE(is("Deepwake", State::checked));
    EXPECT_TRUE(tells("on, 1 hour, 59 minutes left"));
    EXPECT_TRUE(shows("Your computer won't fall asleep until the session ends, even with the lid closed."));
    click("Deepwake");
    EXPECT_TRUE(laptop.waitForLocks(0));
    EXPECT_TRUE(is("Deepwake", State::checked, false));
    EXPECT_EQ(laptop.sessions(), 1); // which goes on
}

TEST_F(DeepwakeJourney, WhatForbidsItIsSaidAndTheSwitchStaysOff) {
    const char* unavailable = "Deepwake can't start because its helper is unavailable.";
    const char* notAllowed = "Deepwake works only for the person at this computer: its access rules don't "
                             "allow this session to use it.";
    app.putSettings(isWarned);
    startApp();
    const auto isRefused = [&](const char* sentence) {
        for (int attempt = 0; attempt < 2; ++attempt) {
            click("Deepwake");
            EXPECT_TRUE(shows(sentence));
            EXPECT_TRUE(is("Deepwake", State::checked, false));
        }
        EXPECT_EQ(laptop.locks(), 0);
        EXPECT_EQ(laptop.sessions(), 0);
    };
    const auto move = [](const std::string& from, const std::string& to) {
        outputOf("mv " + Laptop::file(from) + " " + Laptop::file(to) +
                 " && busctl call org.freedesktop.DBus / org.freedesktop.DBus ReloadConfig");
    };
    const char* service = "services/com.wakeloft.app.lidhelper.service";
    move(service, "uninstalled");
    if (laptop.helper() != 0)
        laptop.signalHelper(SIGTERM);
    EXPECT_TRUE(comesTrue([&] { return laptop.helper() == 0; }));
    isRefused(unavailable);
    move("uninstalled", service);
    Laptop::order("polkit no");
    isRefused(notAllowed);
    EXPECT_TRUE(isGone(unavailable));
    Laptop::order("polkit yes");
    click("Deepwake");
    EXPECT_TRUE(laptop.waitForLocks(1));
    EXPECT_TRUE(isGone(notAllowed));
    EXPECT_TRUE(is("Deepwake", State::checked));
}

} // namespace
} // namespace wakeloft
