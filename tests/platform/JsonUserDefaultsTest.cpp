#include "JsonUserDefaults.h"
#include "support/Files.h"
#include "twins/LeaseTwins.h"

#include <gtest/gtest.h>

#include <sys/stat.h>

#include <limits>

namespace wakeloft {
namespace {

namespace fs = std::filesystem;

struct Settings : testing::Test, TemporaryFolder {
    ManualRunLoop loop;
    const fs::path path = folder / "wakeloft/settings.json";
    const fs::path kept = path.string() + ".kept-1";

    static bool save(JsonUserDefaults& defaults, double value) {
        defaults.set("a", {value});
        defaults.write();
        return defaults.writeTrouble() == std::nullopt;
    }
};

TEST_F(Settings, EveryTypeIsReadBackAsItself) {
    constexpr double infinity = std::numeric_limits<double>::infinity();
    const std::map<std::string, DefaultsValue> values = {
        {"flag", {true}},
        {"time", {1763700000.123456}},
        {"infinite", {-infinity}},
        {"text", {std::string("1763700000 “ü”")}},
        {"date", {Date{1763700000.5}}},
        {"far", {Date{infinity}}},
        {"list", {DefaultsValue::List{{1800.0}, {false}, {DefaultsValue::List{}}}}}};
    const fs::path target = folder / "dotfiles/settings.json";
    fs::create_directories(path.parent_path());
    fs::create_symlink(target, path); // which is followed
    JsonUserDefaults defaults(path, loop);
    for (const auto& [key, value] : values)
        defaults.set(key, value);
    defaults.set("gone", {true});
    defaults.remove("gone");
    EXPECT_FALSE(fs::exists(target)); // a click does not wait for the disk
    loop.turn();
    const JsonUserDefaults read(path, loop);
    for (const auto& [key, value] : values)
        EXPECT_EQ(read.value(key), value) << key;
    EXPECT_EQ(read.value("gone"), std::nullopt);
    EXPECT_EQ(read.readTrouble(), std::nullopt);
    EXPECT_TRUE(fs::is_symlink(path));
    EXPECT_EQ(fs::status(target).permissions(), fs::perms::owner_read | fs::perms::owner_write);
}

TEST_F(Settings, AFileThatIsNotUnderstoodIsKeptAside) {
    const std::string deep = "{\"x\": " + std::string(100'000, '[') + std::string(100'000, ']') + "}}";
    const std::string ours = R"({"format": "wakeloft-settings", "version": 1, "settings": )";
    for (const std::string& text :
         {std::string(), ours + R"({"x": 1)", std::string("[1, 2]"), std::string("\xff\x01"),
          std::string(R"({"format": "someone-else", "version": 1, "settings": {}})"),
          std::string(R"({"format": "wakeloft-settings", "version": 2, "settings": {"x": true}})"),
          ours + "[]}", ours + R"({"x": {"date": "soon"}}})", ours + deep}) {
        SCOPED_TRACE(text);
        fs::remove_all(path.parent_path());
        put(path, text);
        {
            JsonUserDefaults defaults(path, loop);
            ASSERT_TRUE(defaults.readTrouble());
            EXPECT_NE(defaults.readTrouble()->description.find(kept.string()), std::string::npos);
            EXPECT_EQ(defaults.value("x"), std::nullopt);
            defaults.set("y", {true});
        } // its end writes, too
        EXPECT_EQ(textOf(kept), text);
        EXPECT_EQ(JsonUserDefaults(path, loop).readTrouble(), std::nullopt); // told once
        EXPECT_EQ(JsonUserDefaults(path, loop).value("y"), DefaultsValue{true});
    }
}

TEST_F(Settings, NothingOfOthersIsOverwritten) {
    JsonUserDefaults defaults(path, loop);
    EXPECT_TRUE(save(defaults, 1));
    fs::create_hard_link(path, folder / "before");
    EXPECT_TRUE(save(defaults, 2));
    EXPECT_NE(textOf(folder / "before"), textOf(path)); // replaced as a whole, not written over
    put(path, "somebody's own");
    EXPECT_TRUE(save(defaults, 3));
    EXPECT_EQ(textOf(kept), "somebody's own");
    EXPECT_TRUE(defaults.readTrouble()->description.starts_with("Another program has changed"));
    EXPECT_EQ(JsonUserDefaults(path, loop).value("a"), DefaultsValue{3.0});
    fs::remove(path); // by hand: simply written anew
    EXPECT_TRUE(save(defaults, 4));
    EXPECT_EQ(std::distance(fs::directory_iterator(path.parent_path()), {}), 2); // none that is temporary

    put(path, "more of it");
    for (int number = 1; number < 1000; ++number)
        put(path.string() + ".kept-" + std::to_string(number), "kept before");
    EXPECT_FALSE(save(defaults, 5)); // it cannot be moved away
    EXPECT_EQ(textOf(path), "more of it");
    fs::remove_all(path.parent_path());
    fs::create_directories(path / "precious");
    EXPECT_TRUE(JsonUserDefaults(path, loop).readTrouble());
    EXPECT_TRUE(fs::exists(kept / "precious"));
    ASSERT_EQ(mkfifo(path.c_str(), 0600), 0); // does not hang
    EXPECT_TRUE(JsonUserDefaults(path, loop).readTrouble());
}

} // namespace
} // namespace wakeloft
