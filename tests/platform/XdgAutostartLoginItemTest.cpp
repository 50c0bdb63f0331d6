#include "XdgAutostartLoginItem.h"
#include "support/Files.h"

#include <gtest/gtest.h>

namespace wakeloft {
namespace {

namespace fs = std::filesystem;
using State = LoginItemState;

struct Autostart : testing::Test, TemporaryFolder {
    const fs::path entry = folder / "config/autostart/org.example.App.desktop";
    const fs::path shared = folder / "etc/autostart/org.example.App.desktop";
    XdgAutostartLoginItem item = make("/usr/bin/Wakeloft");

    [[nodiscard]] XdgAutostartLoginItem make(const fs::path& program) const {
        return XdgAutostartLoginItem({entry, {folder / "none", shared}, program, {"/usr"}, ""});
    }
    [[nodiscard]] State stateOf(const std::string& text) const {
        put(entry, text);
        return item.state();
    }
    static std::string messageOf(const std::expected<void, Error>& outcome) {
        return outcome ? "" : std::get<PlatformError>(outcome.error()).description;
    }
};

TEST_F(Autostart, ReadsWhatDesktopsMakeOfItAndSwitches) {
    EXPECT_EQ(item.state(), State::disabled);
    EXPECT_TRUE(item.unregisterItem()); // nothing to remove
    const std::string plain = "# mine\n\n[Desktop Entry]\nType=Application\nExec = /usr/bin/Wakeloft\r\n";
    EXPECT_EQ(stateOf(plain + "#Hidden=true\nHidden[de]=true\n[Desktop Action x]\nHidden=true\n"),
              State::enabled);
    for (const std::string& off :
         {plain + "Hidden=true\n", plain + " X-GNOME-Autostart-enabled = false \n",
          std::string("[Other]\nExec=x\n[Desktop Entry]\nExec=x\n"), std::string()}) {
        EXPECT_EQ(stateOf(off), State::disabled) << off;
        ASSERT_TRUE(item.registerItem());
        EXPECT_EQ(item.state(), State::enabled) << textOf(entry);
    }
    EXPECT_EQ(textOf(entry), "[Desktop Entry]\nType=Application\nName=Wakeloft\nIcon=org.example.App\n"
                             "Exec=/usr/bin/Wakeloft\nX-GNOME-Autostart-enabled=true\n");
    ASSERT_TRUE(item.unregisterItem());
    EXPECT_FALSE(fs::exists(entry));
}

TEST_F(Autostart, AnEditedEntryKeepsWhatItSaysBeyondTheSwitch) {
    put(entry,
        "# mine\n[Desktop Entry]\nName=Cup\nX-KDE-autostart-phase=2\nExec=env A=1 /usr/bin/Wakeloft -x\n"
        "Hidden=true\nHidden=true\nTryExec=/gone\n\n[Desktop Action x]\nHidden=true\nExec=x\n");
    ASSERT_TRUE(item.registerItem());
    EXPECT_EQ(
        textOf(entry),
        "# mine\n[Desktop Entry]\nName=Cup\nX-KDE-autostart-phase=2\nExec=env A=1 /usr/bin/Wakeloft -x\n"
        "Type=Application\nIcon=org.example.App\nX-GNOME-Autostart-enabled=true\n\n[Desktop Action x]\n"
        "Hidden=true\nExec=x\n");
    ASSERT_TRUE(make("/opt/new \"cup\"/$HOME'Wakeloft").registerItem()); // the program has moved, far
    EXPECT_NE(textOf(entry).find("\nExec=\"/opt/new \\\\\"cup\\\\\"/\\\\$HOME'Wakeloft\"\n"),
              std::string::npos)
        << textOf(entry);
}

TEST_F(Autostart, NothingOfOthersIsChanged) {
    const std::string others = "[Desktop Entry]\nName=Everyone's\nExec=/usr/bin/Wakeloft\n";
    put(shared, others);
    ASSERT_TRUE(item.registerItem());
    EXPECT_FALSE(fs::exists(entry)); // the shared one does
    ASSERT_TRUE(item.unregisterItem());
    EXPECT_EQ(item.state(), State::disabled);
    const auto menu = folder / "applications/org.example.App.desktop";
    put(menu, others);
    fs::remove(entry);
    fs::create_symlink(menu, entry); // is replaced, not followed
    ASSERT_TRUE(item.unregisterItem());
    EXPECT_EQ(item.state(), State::disabled);
    EXPECT_EQ(textOf(menu), others);
    EXPECT_EQ(textOf(shared), others);
}

TEST_F(Autostart, AFailureIsASentence) {
    fs::create_directories(entry / "precious");
    EXPECT_TRUE(messageOf(item.registerItem()).starts_with("Cannot read " + entry.string()));
    EXPECT_TRUE(messageOf(item.unregisterItem()).starts_with("Cannot remove " + entry.string()));
    fs::remove_all(entry);
    for (const char* program : {"/opt/100%/Wakeloft", "/opt/back\\slash/Wakeloft", ""})
        EXPECT_TRUE(messageOf(make(program).registerItem()).starts_with("Desktops cannot open")) << program;
}

} // namespace
} // namespace wakeloft
