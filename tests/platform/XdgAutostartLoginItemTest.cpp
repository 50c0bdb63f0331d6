#include "XdgAutostartLoginItem.h"
#include "ProgramLocation.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <memory>
#include <sstream>

namespace wakeloft {
namespace {

namespace fs = std::filesystem;
using State = LoginItemState;

struct Autostart : testing::Test {
    fs::path folder;
    fs::path entry;
    fs::path shared;
    std::unique_ptr<XdgAutostartLoginItem> item;

    Autostart() {
        std::string name = (fs::temp_directory_path() / "wakeloft-autostart.XXXXXX").string();
        folder = mkdtemp(name.data());
        entry = folder / "config/autostart/org.example.App.desktop";
        shared = folder / "etc/autostart/org.example.App.desktop";
        make("/usr/bin/Wakeloft");
    }
    ~Autostart() override { fs::remove_all(folder); }

    void make(const fs::path& program, const std::string& obstacle = "") {
        item = std::make_unique<XdgAutostartLoginItem>(
            XdgAutostartLoginItem::Places{entry, {folder / "none", shared}, program, {"/usr"}, obstacle});
    }
    static std::string contents(const fs::path& file) {
        std::stringstream text;
        text << std::ifstream(file).rdbuf();
        return text.str();
    }
    static void put(const fs::path& file, const std::string& text) {
        fs::create_directories(file.parent_path());
        std::ofstream(file) << text;
    }
    [[nodiscard]] State stateOf(const std::string& text) const {
        put(entry, text);
        return item->state();
    }
};

TEST_F(Autostart, ASwitchWritesTheEntryAndRemovesIt) {
    EXPECT_EQ(item->state(), State::disabled);
    EXPECT_TRUE(item->unregisterItem()); // nothing to remove
    ASSERT_TRUE(item->registerItem());
    EXPECT_EQ(item->state(), State::enabled);
    EXPECT_EQ(contents(entry), "[Desktop Entry]\nType=Application\nName=Wakeloft\nIcon=org.example.App\n"
                               "Exec=/usr/bin/Wakeloft\nX-GNOME-Autostart-enabled=true\n");
    const auto written = fs::last_write_time(entry);
    ASSERT_TRUE(item->registerItem()); // as at every start
    EXPECT_EQ(fs::last_write_time(entry), written);
    ASSERT_TRUE(item->unregisterItem());
    EXPECT_FALSE(fs::exists(entry));
    EXPECT_EQ(item->state(), State::disabled);
}

TEST_F(Autostart, ReadsWhatDesktopsMakeOfIt) {
    const std::string plain = "# mine\n\n[Desktop Entry]\nType=Application\nExec = /usr/bin/Wakeloft\r\n";
    EXPECT_EQ(stateOf(plain), State::enabled);
    EXPECT_EQ(stateOf(plain + "Hidden=true\n"), State::disabled);
    EXPECT_EQ(stateOf(plain + "Hidden=true\nHidden=false"), State::enabled);
    EXPECT_EQ(stateOf(plain + " X-GNOME-Autostart-enabled = false \n"), State::disabled);
    EXPECT_EQ(stateOf(plain + "#Hidden=true\nHidden[de]=true\n[Desktop Action x]\nHidden=true\n"),
              State::enabled);
    for (const char* wrong : {"", "Exec=/usr/bin/Wakeloft\n[Desktop Entry]\n", "\xff\x00\n", "[",
                              "[Desktop Entry]", "[Other]\nExec=x\n[Desktop Entry]\nExec=x\n"})
        EXPECT_EQ(stateOf(wrong), State::disabled) << wrong;
    ASSERT_TRUE(item->registerItem()); // in place of what no desktop reads
    EXPECT_EQ(item->state(), State::enabled);
}

TEST_F(Autostart, AnEditedEntryKeepsWhatItSaysBeyondTheSwitch) {
    put(entry,
        "# mine\n[Desktop Entry]\nName=Cup\nX-KDE-autostart-phase=2\nExec=env A=1 /usr/bin/Wakeloft -x\n"
        "Hidden=true\nHidden=true\nTryExec=/gone\n\n[Desktop Action x]\nHidden=true\nExec=x\n");
    ASSERT_TRUE(item->registerItem());
    EXPECT_EQ(
        contents(entry),
        "# mine\n[Desktop Entry]\nName=Cup\nX-KDE-autostart-phase=2\nExec=env A=1 /usr/bin/Wakeloft -x\n"
        "Type=Application\nIcon=org.example.App\nX-GNOME-Autostart-enabled=true\n\n[Desktop Action x]\n"
        "Hidden=true\nExec=x\n");
    make("/opt/new \"cup\"/$HOME'Wakeloft"); // the program has moved, far
    EXPECT_EQ(item->state(), State::enabled);
    ASSERT_TRUE(item->registerItem());
    EXPECT_NE(contents(entry).find("\nName=Cup\nX-KDE-autostart-phase=2\n"
                                   R"(Exec="/opt/new \\"cup\\"/\\$HOME'Wakeloft")"
                                   "\n"),
              std::string::npos)
        << contents(entry);
    const auto written = fs::last_write_time(entry);
    ASSERT_TRUE(item->registerItem());
    EXPECT_EQ(fs::last_write_time(entry), written);
}

TEST_F(Autostart, TheEntryForAllUsersIsHiddenNotRemoved) {
    put(shared, "[Desktop Entry]\nName=Everyone's\nExec=/usr/bin/Wakeloft\n");
    EXPECT_EQ(item->state(), State::enabled);
    ASSERT_TRUE(item->registerItem());
    EXPECT_FALSE(fs::exists(entry)); // the shared one does
    ASSERT_TRUE(item->unregisterItem());
    EXPECT_EQ(item->state(), State::disabled);
    EXPECT_TRUE(contents(shared).find("Hidden") == std::string::npos);
    ASSERT_TRUE(item->registerItem());
    EXPECT_EQ(item->state(), State::enabled);
    put(entry, "");
    EXPECT_EQ(item->state(), State::disabled); // an empty file of the user's hides it, too
}

TEST_F(Autostart, ALinkIsReplacedNotFollowed) {
    const auto menu = folder / "applications/org.example.App.desktop";
    put(menu, "[Desktop Entry]\nExec=Wakeloft\n");
    fs::create_directories(entry.parent_path());
    fs::create_symlink(menu, entry);
    EXPECT_EQ(item->state(), State::enabled);
    ASSERT_TRUE(item->registerItem());
    EXPECT_FALSE(fs::is_symlink(entry));
    EXPECT_EQ(contents(menu), "[Desktop Entry]\nExec=Wakeloft\n");
    EXPECT_NE(contents(entry).find("Exec=/usr/bin/Wakeloft\n"), std::string::npos);
}

TEST_F(Autostart, AFailureIsASentence) {
    const auto message = [](const std::expected<void, Error>& outcome) {
        return outcome ? "" : std::get<PlatformError>(outcome.error()).description;
    };
    fs::create_directories(entry / "precious");
    EXPECT_EQ(item->state(), State::disabled);
    EXPECT_TRUE(message(item->registerItem()).starts_with("Cannot read " + entry.string()));
    EXPECT_TRUE(message(item->unregisterItem()).starts_with("Cannot remove " + entry.string()));
    EXPECT_TRUE(fs::exists(entry / "precious"));
    fs::remove_all(folder / "config");
    put(folder / "config", "a file where the folder should be");
    EXPECT_NE(message(item->registerItem()), "");
    fs::remove(folder / "config");
    for (const char* program : {"/opt/100%/Wakeloft", "/opt/back\\slash/Wakeloft", ""}) {
        make(program);
        EXPECT_TRUE(message(item->registerItem()).starts_with("Desktops cannot open Wakeloft")) << program;
    }
    make("/usr/bin/Wakeloft", "In a box.");
    EXPECT_EQ(message(item->registerItem()), "In a box.");
    EXPECT_EQ(message(item->unregisterItem()), "In a box.");
}

TEST_F(Autostart, InstalledProgramsStayWhereTheyAre) {
    const char* home = std::getenv("HOME");
    const std::string before = home == nullptr ? "/" : home;
    setenv("HOME", folder.c_str(), 1);
    const auto isStable = [this](const fs::path& program) {
        return XdgAutostartLoginItem({entry, {}, program, installationFolders(), ""}).isAtStableLocation();
    };
    for (const fs::path& program : {fs::path("/usr/bin/Wakeloft"), fs::path("/usr/local/bin/Wakeloft"),
                                    fs::path("/opt/wakeloft/bin/Wakeloft"), folder / ".local/bin/Wakeloft",
                                    folder / "Applications/Tools/Wakeloft.AppImage"})
        EXPECT_TRUE(isStable(program)) << program;
    for (const fs::path& program :
         {fs::path("/usrx/bin/Wakeloft"), fs::path("/tmp/Wakeloft"), fs::path("/usr/../tmp/Wakeloft"),
          folder / "Downloads/Wakeloft", folder / "Applications Old/Wakeloft", fs::path()})
        EXPECT_FALSE(isStable(program)) << program;
    fs::create_directories(folder / "Downloads");
    fs::create_directory_symlink(folder / "Downloads", folder / ".local");
    EXPECT_TRUE(isStable(folder / "Downloads/Wakeloft")); // it is the same folder
    EXPECT_FALSE(isBelow("/usr", "/usr"));
    setenv("HOME", before.c_str(), 1);
}

TEST_F(Autostart, KnowsThePlacesOfThisProgram) {
    setenv("XDG_CONFIG_HOME", folder.c_str(), 1);
    setenv("XDG_CONFIG_DIRS", "/a:relative:/b", 1);
    const auto places = XdgAutostartLoginItem::placesFor("org.example.App");
    EXPECT_EQ(places.entry, folder / "autostart/org.example.App.desktop");
    EXPECT_EQ(places.shared, (std::vector<fs::path>{"/a/autostart/org.example.App.desktop",
                                                    "/b/autostart/org.example.App.desktop"}));
    EXPECT_EQ(places.program, fs::read_symlink("/proc/self/exe"));
    EXPECT_EQ(places.obstacle, "");

    setenv("SNAP", "/snap/terminal/1", 1); // of a program that started this one
    EXPECT_EQ(currentSandbox(), Sandbox::none);
    setenv("SNAP", places.program.parent_path().c_str(), 1);
    EXPECT_EQ(currentSandbox(), Sandbox::snap);
    EXPECT_NE(XdgAutostartLoginItem::placesFor("org.example.App").obstacle, "");
    unsetenv("SNAP");
    setenv("APPIMAGE", "/home/me/Applications/Wakeloft.AppImage", 1);
    EXPECT_EQ(programPath(), places.program); // of another program
    setenv("APPDIR", places.program.parent_path().c_str(), 1);
    EXPECT_EQ(programPath(), "/home/me/Applications/Wakeloft.AppImage");
    for (const char* name : {"APPIMAGE", "APPDIR", "XDG_CONFIG_HOME", "XDG_CONFIG_DIRS"})
        unsetenv(name);
}

} // namespace
} // namespace wakeloft
