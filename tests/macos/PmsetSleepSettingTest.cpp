#include "PmsetSleepSetting.h"

#include <gtest/gtest.h>

#include <chrono>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <sstream>

namespace wakeloft {
namespace {

namespace fs = std::filesystem;

/// A program in pmset's place, and a file in the kernel's.
struct PmsetSetting : testing::Test {
    fs::path folder = testing::TempDir() + "wakeloft-pmset-test";
    bool isReadable = true;

    PmsetSetting() {
        fs::remove_all(folder);
        fs::create_directories(folder);
    }
    ~PmsetSetting() override { fs::remove_all(folder); }

    [[nodiscard]] std::string content(const char* file) const {
        std::stringstream text;
        text << std::ifstream(folder / file).rdbuf();
        return text.str();
    }

    PmsetSleepSetting setting(const std::string& script) {
        const auto program = folder / "pmset";
        std::ofstream(program) << "#!/bin/sh\ncd " << folder << "\n" << script << "\n";
        fs::permissions(program, fs::perms::owner_all);
        return PmsetSleepSetting(
            [this]() -> std::expected<bool, PlatformError> {
                if (!isReadable)
                    return std::unexpected(PlatformError{"", 0, "unreadable"});
                return content("kernel") == "1\n";
            },
            program);
    }

    /// The error's words, empty for a success.
    static std::string written(PmsetSleepSetting setting, bool disabled) {
        const auto result = setting.writeDisabled(disabled);
        return result ? "" : result.error().description;
    }
};

double secondsOf(const std::function<void()>& work) {
    const auto start = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

TEST_F(PmsetSetting, AWriteCountsOnceTheKernelHasTakenItOver) {
    // Taken over after the program's end, from which nothing can be told.
    const auto slow = setting("env > environment; echo \"$@\" >> arguments; (sleep 0.2; echo $3 > kernel) &");
    EXPECT_GE(secondsOf([&] { EXPECT_EQ(written(slow, true), ""); }), 0.2);
    EXPECT_EQ(written(slow, false), "");
    EXPECT_EQ(content("arguments"), "-a disablesleep 1\n-a disablesleep 0\n");
    EXPECT_EQ(content("environment").find("HOME"), std::string::npos);
}

TEST_F(PmsetSetting, AProgramThatFailsIsNoSuccessThoughTheKernelAgrees) {
    EXPECT_EQ(written(setting("sleep 0.1; exit 3"), false), "pmset ended with code 3.");
    EXPECT_NE(written(setting("kill -9 $$"), false), "");
    EXPECT_NE(written(PmsetSleepSetting([] { return false; }, folder / "missing"), false), "");
    isReadable = false;
    EXPECT_EQ(written(setting("true"), false), "unreadable");
}

TEST_F(PmsetSetting, AWriteGivesUpInTimeAndLeavesNothingRunning) {
    std::string error;
    double seconds = secondsOf([&] { error = written(setting("true"), true); });
    EXPECT_EQ(error, "The system has not taken the setting over in time.");
    EXPECT_GE(seconds, 1);
    EXPECT_LT(seconds, 3);
    seconds = secondsOf([&] { error = written(setting("echo $$ > process; exec sleep 60"), false); });
    EXPECT_EQ(error, "pmset has not ended in time.");
    EXPECT_LT(seconds, 3);
    const int process = std::stoi(content("process"));
    EXPECT_EQ(kill(process, 0), -1) << "process " << process << " is still there";
}

} // namespace
} // namespace wakeloft
