#include "support/ChildProcess.h"
#include "ui/PanelJourney.h"

#include <algorithm>
#include <csignal>
#include <filesystem>

namespace wakeloft {
namespace {

struct DeepwakeJourney : PanelJourney {
    void TearDown() override {
        Laptop::setLid(false);
        laptop.settle();
        Laptop::order({"polkit", "yes"});
        PanelJourney::TearDown();
    }
};

TEST_F(DeepwakeJourney, TheHeatWarningComesFirstThenTheLidMayBeShut) {
    constexpr double promptMs = 2000;
    const auto controlMs = Laptop::sleepsAfter([] { Laptop::setLid(true); }, promptMs);
    ASSERT_TRUE(controlMs) << "the lid does not put this machine to sleep";
    Laptop::setLid(false);
    laptop.settle();

    startApp();
    openPanel();
    const char* warning = "With the lid shut and no display attached, heat can build up. Keep your computer "
                          "out of bags and other enclosed spaces while it is working.";
    EXPECT_TRUE(shows(warning));
    EXPECT_TRUE(is("Deepwake", AccessibleTree::sensitive, false));
    click("Deepwake");
    press("I understand the heat warning");
    EXPECT_TRUE(isGone(warning));
    EXPECT_TRUE(is("Deepwake", AccessibleTree::sensitive));
    EXPECT_TRUE(
        is("Deepwake", AccessibleTree::checked, false)); // the press on the disabled switch did nothing
    EXPECT_EQ(laptop.locks(), 0);

    click("Deepwake");
    EXPECT_TRUE(laptop.waitForLocks(1));
    EXPECT_TRUE(is("Deepwake", AccessibleTree::checked));
    EXPECT_TRUE(tells("on, 1 hour, 59 minutes left"));
    EXPECT_TRUE(shows("Your computer won't fall asleep until the session ends, even with the lid closed."));
    EXPECT_EQ(Laptop::sleepsAfter([] { Laptop::setLid(true); }, std::max(1000.0, 10 * *controlMs)),
              std::nullopt);
    EXPECT_TRUE(Laptop::sleepsAfter([this] { click("Deepwake"); }, promptMs)); // off, and the lid is shut
    EXPECT_TRUE(is("Deepwake", AccessibleTree::checked, false));
    EXPECT_EQ(laptop.locks(), 0);
    EXPECT_TRUE(sessionsAre(1)); // which was there to be joined
}

/// While it lives the lid helper is not installed.
class HelperUninstalled {
  public:
    explicit HelperUninstalled(Laptop& laptop) : laptop_(laptop) {
        std::filesystem::rename(service_, aside_);
        reload();
        if (laptop_.helper() != 0)
            laptop_.signalHelper(SIGTERM);
        EXPECT_TRUE(comesTrue([&] { return laptop_.helper() == 0; }));
    }
    HelperUninstalled(const HelperUninstalled&) = delete;
    HelperUninstalled& operator=(const HelperUninstalled&) = delete;
    ~HelperUninstalled() {
        std::filesystem::rename(aside_, service_);
        reload();
    }

  private:
    static void reload() {
        EXPECT_EQ(ChildProcess({"busctl", "call", "org.freedesktop.DBus", "/org/freedesktop/DBus",
                                "org.freedesktop.DBus", "ReloadConfig"})
                      .wait(5000),
                  0);
    }

    Laptop& laptop_;
    std::filesystem::path service_ = Laptop::file("services/com.wakeloft.app.lidhelper.service");
    std::filesystem::path aside_ = Laptop::file("uninstalled");
};

TEST_F(DeepwakeJourney, WhatForbidsItIsSaidAndTheSwitchStaysOff) {
    const char* unavailable = "Deepwake can't start because its helper is unavailable.";
    const char* notAllowed = "Deepwake works only for the person at this computer: its access rules don't "
                             "allow this session to use it.";
    app.putSettings("\"com.wakeloft.acknowledgedHeatWarning\": true");
    startApp();
    openPanel();
    const auto isRefused = [&](const char* sentence) {
        click("Deepwake");
        EXPECT_TRUE(shows(sentence));
        press("Deepwake"); // the same again
        EXPECT_TRUE(is("Deepwake", AccessibleTree::checked, false));
        EXPECT_TRUE(shows(sentence));
        EXPECT_EQ(laptop.locks(), 0);
        EXPECT_TRUE(sessionsAre(0));
    };
    {
        const HelperUninstalled uninstalled(laptop);
        isRefused(unavailable);
    }
    Laptop::order({"polkit", "no"});
    isRefused(notAllowed);
    EXPECT_TRUE(isGone(unavailable));
    Laptop::order({"polkit", "yes"});
    click("Deepwake");
    EXPECT_TRUE(laptop.waitForLocks(1));
    EXPECT_TRUE(isGone(notAllowed));
    EXPECT_TRUE(is("Deepwake", AccessibleTree::checked));
}

} // namespace
} // namespace wakeloft
