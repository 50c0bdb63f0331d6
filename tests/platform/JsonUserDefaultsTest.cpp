#include "JsonUserDefaults.h"
#include "SdEventMainRunLoop.h"

#include <gtest/gtest.h>

#include <sys/resource.h>

#include <cmath>
#include <csignal>
#include <cstdlib>
#include <fstream>
#include <limits>
#include <memory>
#include <sstream>

namespace wakeloft {
namespace {

namespace fs = std::filesystem;

struct Settings : testing::Test {
    std::unique_ptr<SdEventMainRunLoop> loop = std::move(SdEventMainRunLoop::create().value());
    fs::path folder;
    fs::path path;

    Settings() {
        std::string name = (fs::temp_directory_path() / "wakeloft-settings.XXXXXX").string();
        folder = mkdtemp(name.data());
        path = folder / "wakeloft/settings.json";
    }
    ~Settings() override { fs::remove_all(folder); }

    static std::string contents(const fs::path& file) {
        std::stringstream text;
        text << std::ifstream(file).rdbuf();
        return text.str();
    }
    void put(const std::string& text) const {
        fs::create_directories(path.parent_path());
        std::ofstream(path) << text;
    }
    [[nodiscard]] std::string kept(int number = 1) const {
        return contents(path.string() + ".kept-" + std::to_string(number));
    }
    [[nodiscard]] int files() const {
        return static_cast<int>(
            std::distance(fs::directory_iterator(path.parent_path()), fs::directory_iterator()));
    }
};

TEST_F(Settings, EveryTypeIsReadBackAsItself) {
    constexpr double infinity = std::numeric_limits<double>::infinity();
    const std::vector<std::pair<std::string, DefaultsValue>> values = {
        {"flag", {true}},
        {"one", {1.0}},
        {"time", {1763700000.123456}},
        {"infinite", {-infinity}},
        {"text", {std::string("1763700000 “ü”")}},
        {"date", {Date{1763700000.5}}},
        {"far", {Date{infinity}}},
        {"list", {DefaultsValue::List{{1800.0}, {false}, {DefaultsValue::List{}}}}}};
    {
        JsonUserDefaults defaults(path, *loop);
        EXPECT_EQ(defaults.readTrouble(), std::nullopt);
        for (const auto& [key, value] : values)
            defaults.set(key, value);
        defaults.set("nan", {std::nan("")});
        defaults.set("gone", {true});
        defaults.remove("gone");
        defaults.set("bytes", {std::string("\xff\xfe")});
    }
    const JsonUserDefaults defaults(path, *loop);
    for (const auto& [key, value] : values)
        EXPECT_EQ(defaults.value(key), value) << key;
    EXPECT_TRUE(std::isnan(std::get<double>(defaults.value("nan")->value)));
    EXPECT_EQ(defaults.value("gone"), std::nullopt);
    EXPECT_TRUE(defaults.value("bytes").has_value());
    EXPECT_EQ(files(), 1); // no temporary file stays
    EXPECT_EQ(fs::status(path).permissions() & fs::perms::all,
              fs::perms::owner_read | fs::perms::owner_write);
}

TEST_F(Settings, ChangesOfOneTurnAreWrittenOnceAndLater) {
    JsonUserDefaults defaults(path, *loop);
    defaults.set("a", {1.0});
    defaults.set("b", {2.0});
    EXPECT_FALSE(fs::exists(path));
    sd_event_run(loop->event(), 1'000'000);
    const auto first = fs::last_write_time(path);
    EXPECT_NE(contents(path).find("\"b\": 2.0"), std::string::npos) << contents(path);
    defaults.set("b", {2.0}); // no change
    sd_event_run(loop->event(), 50'000);
    EXPECT_EQ(fs::last_write_time(path), first);
}

TEST_F(Settings, AFileThatIsNotUnderstoodIsKeptAside) {
    const auto written = [](const std::string& settings) {
        return R"({"format": "wakeloft-settings", "version": 1, "settings": )" + settings + "}";
    };
    const std::string deep = std::string(100'000, '[') + std::string(100'000, ']');
    for (const std::string& text :
         {std::string(), written("{\"a\": 1").substr(0, 50), std::string("[1, 2]"), std::string("{}"),
          std::string("\xff\x01"), std::string(R"({"format": "someone-else", "version": 1, "settings": {}})"),
          std::string(R"({"format": "wakeloft-settings", "version": 2, "settings": {"x": {"new": 1}}})"),
          std::string(R"({"format": "wakeloft-settings", "version": "1", "settings": {}})"), written("[]"),
          written(R"({"x": null})"), written(R"({"x": {"date": "soon"}})"), written("{\"x\": " + deep + "}"),
          "{\"format\": " + deep + "}"}) {
        SCOPED_TRACE(text);
        fs::remove_all(path.parent_path());
        put(text);
        {
            JsonUserDefaults defaults(path, *loop);
            ASSERT_TRUE(defaults.readTrouble());
            EXPECT_NE(defaults.readTrouble()->description.find(".kept-1"), std::string::npos);
            EXPECT_EQ(defaults.value("x"), std::nullopt);
            defaults.set("y", {true});
        }
        EXPECT_EQ(kept(), text);
        const JsonUserDefaults again(path, *loop);
        EXPECT_EQ(again.readTrouble(), std::nullopt); // told once
        EXPECT_EQ(again.value("y"), DefaultsValue{true});
    }
}

TEST_F(Settings, AForeignWriteWhileRunningIsKeptAside) {
    JsonUserDefaults defaults(path, *loop);
    defaults.set("a", {1.0});
    defaults.write();
    put("somebody's own");
    defaults.set("a", {2.0});
    defaults.write();
    EXPECT_EQ(kept(), "somebody's own");
    EXPECT_TRUE(defaults.readTrouble()->description.starts_with("Another program has changed"));
    EXPECT_EQ(JsonUserDefaults(path, *loop).value("a"), DefaultsValue{2.0});
    fs::remove(path); // removed by hand: simply written anew
    defaults.set("a", {3.0});
    defaults.write();
    EXPECT_EQ(defaults.writeTrouble(), std::nullopt);
    EXPECT_EQ(files(), 2);
}

TEST_F(Settings, AFileThatCannotBeMovedAwayIsNotOverwritten) {
    put("somebody's own");
    for (int number = 1; number < 1000; ++number)
        std::ofstream(path.string() + ".kept-" + std::to_string(number)) << "kept before";
    JsonUserDefaults defaults(path, *loop);
    EXPECT_TRUE(defaults.readTrouble());
    defaults.set("a", {1.0});
    defaults.write();
    EXPECT_TRUE(defaults.writeTrouble());
    EXPECT_EQ(contents(path), "somebody's own");
}

TEST_F(Settings, AFolderOrAPipeInItsPlaceDoesNotHangAndLosesNothing) {
    fs::create_directories(path / "precious");
    JsonUserDefaults defaults(path, *loop);
    EXPECT_TRUE(defaults.readTrouble());
    EXPECT_TRUE(fs::exists(path.string() + ".kept-1/precious"));
    ASSERT_EQ(mkfifo(path.c_str(), 0600), 0);
    EXPECT_TRUE(JsonUserDefaults(path, *loop).readTrouble());
}

TEST_F(Settings, AFullDiskKeepsTheOldFileAndTheNewValues) {
    JsonUserDefaults defaults(path, *loop);
    defaults.set("a", {1.0});
    defaults.write();
    const auto before = contents(path);
    int told = 0;
    const auto observer = defaults.troubleChanged().subscribe([&] { ++told; });
    rlimit unlimited{};
    ASSERT_EQ(getrlimit(RLIMIT_FSIZE, &unlimited), 0);
    std::signal(SIGXFSZ, SIG_IGN);
    const rlimit none{0, unlimited.rlim_max};
    ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &none), 0);
    defaults.set("a", {2.0});
    defaults.write();
    defaults.write();
    ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &unlimited), 0);
    ASSERT_TRUE(defaults.writeTrouble());
    EXPECT_TRUE(defaults.writeTrouble()->description.starts_with("Cannot save " + path.string()));
    EXPECT_EQ(told, 1);
    EXPECT_EQ(contents(path), before);
    EXPECT_EQ(files(), 1);
    EXPECT_EQ(defaults.value("a"), DefaultsValue{2.0});
    defaults.set("b", {true}); // the next change writes all
    defaults.write();
    EXPECT_EQ(defaults.writeTrouble(), std::nullopt);
    EXPECT_EQ(told, 2);
    EXPECT_EQ(JsonUserDefaults(path, *loop).value("a"), DefaultsValue{2.0});
}

TEST_F(Settings, ALinkIsFollowed) {
    fs::create_directories(path.parent_path());
    const auto target = folder / "dotfiles.json";
    fs::create_symlink(target, path);
    JsonUserDefaults defaults(path, *loop);
    defaults.set("a", {1.0});
    defaults.write();
    EXPECT_EQ(defaults.writeTrouble(), std::nullopt);
    EXPECT_TRUE(fs::is_symlink(path));
    EXPECT_NE(contents(target).find("\"a\": 1.0"), std::string::npos);
}

TEST(SettingsPath, FollowsTheEnvironment) {
    setenv("HOME", "/home/someone", 1);
    setenv("XDG_CONFIG_HOME", "/elsewhere", 1);
    EXPECT_EQ(settingsPath(), fs::path("/elsewhere/wakeloft/settings.json"));
    for (const char* ignored : {"", "relative"}) {
        setenv("XDG_CONFIG_HOME", ignored, 1);
        EXPECT_EQ(settingsPath(), fs::path("/home/someone/.config/wakeloft/settings.json"));
    }
    unsetenv("HOME");
    EXPECT_FALSE(settingsPath());
}

} // namespace
} // namespace wakeloft
