#include "support/Shell.h"
#include "system/Laptop.h"
#include "system/RunningApp.h"

#include <gtest/gtest.h>

#include <sys/mount.h>

#include <cerrno>
#include <csignal>
#include <cstring>
#include <fstream>

namespace wakeloft {
namespace {

constexpr int patienceMs = 10'000;
constexpr double promptMs = 100;
constexpr const char* isRequested = "\"com.wakeloft.isAwakeRequested\": true";

struct Session : testing::Test {
    RunningApp app;
    Laptop laptop;

    void startReady() {
        app.start();
        ASSERT_TRUE(app.isReady()) << app.output();
    }
    void expectHeldOnce() {
        ASSERT_TRUE(laptop.waitForSessions(1)) << app.output();
        EXPECT_EQ(laptop.inhibitors(), 1);
    }
};

TEST_F(Session, HoldsExactlyOneInhibitorWhileOnAndLetsGoAtOnce) {
    startReady();
    EXPECT_EQ(laptop.inhibitors(), 0);
    EXPECT_EQ(app.trayTitle(), "Wakeloft: off");
    EXPECT_EQ(app.act("turn-on"), "");
    expectHeldOnce();
    EXPECT_EQ(app.trayTitle(), "Wakeloft: on");
    EXPECT_EQ(app.act("start-session", 1800), "");
    EXPECT_EQ(app.trayTitle(), "Wakeloft: on, timer running");
    expectHeldOnce();
    EXPECT_EQ(app.act("turn-off"), "");
    const auto gone = laptop.waitForSessions(0);
    ASSERT_TRUE(gone);
    EXPECT_LE(*gone, promptMs);
    EXPECT_EQ(app.trayTitle(), "Wakeloft: off");
    for (const double rubbish : {0.0, -1.0, 1.0 / 0.0, 1e300})
        EXPECT_NE(app.act("start-session", rubbish), "");
    EXPECT_NE(app.act("start-session"), "");
    EXPECT_NE(app.act("reboot"), "");
    EXPECT_EQ(laptop.inhibitors(), 0);
}

TEST_F(Session, NothingStaysAfterAHundredKills) {
    app.putSettings(isRequested);
    const auto lasting = laptop.lasting(
        "a session", Laptop::session, 100, [this] { app.start(); },
        [this] { app.process().signal(SIGKILL); });
    EXPECT_LE(lasting.median, promptMs);
    EXPECT_LE(lasting.worst, 10 * promptMs); // a busy machine makes one of them wait
}

TEST_F(Session, IsRightAgainAfterTheLoginManagerWasRestarted) {
    startReady();
    EXPECT_EQ(app.act("turn-on"), "");
    expectHeldOnce();
    for (const std::string order : {"restart", "kill"}) {
        SCOPED_TRACE(order);
        Laptop::order("control-login-manager " + order);
        if (order == "kill") {
            EXPECT_TRUE(app.showsTitle("Wakeloft: off")); // nobody honours the inhibitor now
            Laptop::order("control-login-manager start");
        }
        EXPECT_TRUE(app.showsTitle("Wakeloft: on"));
        expectHeldOnce();
    }
    EXPECT_EQ(app.act("turn-off"), "");
    EXPECT_TRUE(laptop.waitForSessions(0));
}

TEST_F(Session, IsThereOnceEndsWithTheDesktopAndComesBack) {
    startReady();
    EXPECT_EQ(app.startAgain(), 0);
    EXPECT_EQ(app.process().wait(0), -1);
    EXPECT_EQ(app.act("start-session", 1800), "");
    app.stop();
    EXPECT_EQ(laptop.inhibitors(), 0);
    startReady();
    expectHeldOnce();
    EXPECT_EQ(app.trayTitle(), "Wakeloft: on, timer running");
    app.endSessionBus();
    EXPECT_EQ(app.process().wait(patienceMs), 0) << app.output();
    EXPECT_EQ(laptop.inhibitors(), 0);
    EXPECT_NE(textOf(app.settings()).find(isRequested), std::string::npos);
}

TEST_F(Session, WithoutASystemBusIsNeverASilentOn) {
    app.start({"DBUS_SYSTEM_BUS_ADDRESS=unix:path=/nonexistent/bus"});
    ASSERT_TRUE(app.isReady()) << app.output();
    EXPECT_TRUE(app.says("The system bus cannot be reached: No such file or directory."));
    EXPECT_EQ(app.act("turn-on"), "");
    EXPECT_EQ(app.trayTitle(), "Wakeloft: off");
    app.stop();
    startReady();
    EXPECT_EQ(app.trayTitle(), "Wakeloft: on"); // the wish is kept, and comes true where it can
}

TEST_F(Session, WithoutASessionBusStillWorks) {
    app.putSettings(isRequested);
    app.start({"DBUS_SESSION_BUS_ADDRESS=unix:path=/nonexistent/bus"});
    EXPECT_TRUE(app.says("The session bus cannot be reached: No such file or directory."));
    EXPECT_TRUE(laptop.waitForSessions(1));
    app.stop();
    EXPECT_EQ(laptop.inhibitors(), 0);
}

TEST_F(Session, WithoutADisplayOrATrayIsTold) {
    app.start({"QT_QPA_PLATFORM=", "DISPLAY=", "WAYLAND_DISPLAY="});
    EXPECT_EQ(app.process().wait(patienceMs), 1);
    EXPECT_TRUE(app.says("There is no display"));
    app.start();
    EXPECT_TRUE(app.says("This desktop shows no tray"));
}

TEST_F(Session, DamagedSettingsAreKeptAsideAndToldOnce) {
    app.putSettings("\"");
    startReady();
    EXPECT_TRUE(app.says("Your settings could not be read (it is damaged)"));
    EXPECT_TRUE(std::filesystem::exists(app.settings().string() + ".kept-1"));
    EXPECT_EQ(app.act("turn-on"), "");
    app.stop();
    startReady();
    EXPECT_EQ(app.trayTitle(), "Wakeloft: on");
    EXPECT_EQ(app.output().find("could not be read"), std::string::npos); // told once
}

TEST_F(Session, AFullDiskIsToldAndTheSessionHeldAllTheSame) {
    const auto config = app.home() / "config";
    std::filesystem::create_directory(config);
    if (mount("none", config.c_str(), "tmpfs", 0, "size=16k,nr_inodes=8") < 0)
        GTEST_SKIP() << "a small disk cannot be mounted here: " << strerror(errno);
    std::filesystem::create_directory(config / "wakeloft");
    std::ofstream(config / "filler") << std::string(65'536, 'x');
    startReady();
    EXPECT_EQ(app.act("turn-on"), "");
    expectHeldOnce();
    EXPECT_TRUE(app.says("settings.json: No space left on device.")) << app.output();
    std::filesystem::remove(config / "filler");
    app.stop(); // saved after all
    EXPECT_NE(textOf(app.settings()).find(isRequested), std::string::npos);
    umount2(config.c_str(), MNT_DETACH);
}

} // namespace
} // namespace wakeloft
