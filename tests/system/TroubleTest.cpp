#include "system/RunningApp.h"

#include <gtest/gtest.h>

#include <sys/mount.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <fstream>

namespace wakeloft {
namespace {

constexpr int patienceMs = 10'000;

struct Trouble : testing::Test {
    RunningApp app;
    LoginManager loginManager{app.event()};
};

TEST_F(Trouble, NoSystemBusIsToldAndNeverASilentOn) {
    app.start({"DBUS_SYSTEM_BUS_ADDRESS=unix:path=/nonexistent/bus"});
    ASSERT_TRUE(app.isReady()) << app.output();
    EXPECT_TRUE(app.says("The system bus cannot be reached: No such file or directory."));
    EXPECT_EQ(app.act("turn-on"), "");
    EXPECT_EQ(app.trayTitle(), "Wakeloft: off");
    app.stop();
    // The wish is kept, and comes true where it can.
    app.start();
    ASSERT_TRUE(app.isReady()) << app.output();
    EXPECT_EQ(app.trayTitle(), "Wakeloft: on");
}

TEST_F(Trouble, NoLoginManagerIsNeverASilentOn) {
    LoginManager::control("stop");
    app.start();
    ASSERT_TRUE(app.isReady()) << app.output();
    EXPECT_EQ(app.act("turn-on"), "");
    EXPECT_EQ(app.trayTitle(), "Wakeloft: off");
    LoginManager::control("start");
    EXPECT_EQ(app.act("turn-on"), "");
    EXPECT_EQ(app.trayTitle(), "Wakeloft: on");
    EXPECT_EQ(loginManager.count(), 1);
}

TEST_F(Trouble, NoSessionBusIsToldAndTheSessionStillWorks) {
    app.putSettings("\"com.wakeloft.isAwakeRequested\": true");
    app.start({"DBUS_SESSION_BUS_ADDRESS=unix:path=/nonexistent/bus"});
    EXPECT_TRUE(app.says("The session bus cannot be reached: No such file or directory."));
    EXPECT_TRUE(loginManager.waitForCount(1, patienceMs));
    app.stop();
    EXPECT_EQ(loginManager.count(), 0);
}

TEST_F(Trouble, NoTrayHostIsToldAfterAWhile) {
    app.start();
    EXPECT_TRUE(app.says("This desktop shows no tray"));
}

TEST_F(Trouble, NoDisplayIsToldAndIsAFailure) {
    app.start({"QT_QPA_PLATFORM=", "DISPLAY=", "WAYLAND_DISPLAY="});
    EXPECT_EQ(app.process().wait(patienceMs), 1);
    EXPECT_TRUE(app.says("There is no display"));
}

TEST_F(Trouble, DamagedSettingsAreKeptAsideAndToldOnce) {
    app.putSettings("");
    std::ofstream(app.settings()) << "{\"format\": \"wakelo";
    app.start();
    ASSERT_TRUE(app.isReady()) << app.output();
    EXPECT_TRUE(app.says("Your settings could not be read (it is damaged)"));
    EXPECT_TRUE(std::filesystem::exists(app.settings().string() + ".kept-1"));
    EXPECT_EQ(app.act("turn-on"), "");
    app.stop();
    app.start();
    ASSERT_TRUE(app.isReady());
    EXPECT_EQ(app.trayTitle(), "Wakeloft: on");
    EXPECT_EQ(app.output().find("could not be read"), std::string::npos);
}

TEST_F(Trouble, AFullDiskIsToldAndTheSessionHeldAllTheSame) {
    const auto config = app.home() / "config";
    std::filesystem::create_directories(config);
    if (mount("none", config.c_str(), "tmpfs", 0, "size=16k,nr_inodes=8") < 0)
        GTEST_SKIP() << "a small disk cannot be mounted here: " << strerror(errno);
    std::filesystem::create_directories(config / "wakeloft");
    std::ofstream(config / "filler") << std::string(65'536, 'x');
    app.start();
    EXPECT_TRUE(app.isReady()) << app.output();
    EXPECT_EQ(app.act("turn-on"), "");
    EXPECT_EQ(app.trayTitle(), "Wakeloft: on");
    EXPECT_TRUE(app.says("settings.json: No space left on device.")) << app.output();
    std::filesystem::remove(config / "filler");
    app.stop(); // saved after all
    EXPECT_NE(app.settingsText().find("isAwakeRequested"), std::string::npos);
    umount2(config.c_str(), MNT_DETACH);
}

} // namespace
} // namespace wakeloft
