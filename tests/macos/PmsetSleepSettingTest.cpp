#include "PmsetSleepSetting.h"

#include <gtest/gtest.h>
#include <unistd.h>

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
    fs::path folder = testing::TempDir() + "wakeloft-pmset-test-" + std::to_string(getpid());
    double seconds = 0; ///< that the last write took

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

    /// The error's words, empty for a success.
    std::string written(bool disabled, const std::string& script) {
        const auto program = folder / "pmset";
        std::ofstream(program) << "#!/bin/sh\ncd " << folder << "\n" << script << "\n";
        fs::permissions(program, fs::perms::owner_all);
        PmsetSleepSetting setting([this] { return content("kernel") == "1\n"; }, program);
        const auto start = std::chrono::steady_clock::now();
        const auto result = setting.writeDisabled(disabled);
        seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
        return result ? "" : result.error().description;
    }
};

TEST_F(PmsetSetting, AWriteCountsOnceTheKernelHasTakenItOver) {
    // Taken over after the program's end, from which nothing can be told.
    const auto* slow = "env > environment; echo \"$@\" >> arguments; (sleep 0.2; echo $3 > kernel) &";
    EXPECT_EQ(written(true, slow), "");
    EXPECT_GE(seconds, 0.2);
    EXPECT_EQ(written(false, slow), "");
    EXPECT_EQ(content("arguments"), "-a disablesleep 1\n-a disablesleep 0\n");
    EXPECT_EQ(content("environment").find("HOME"), std::string::npos);
}

TEST_F(PmsetSetting, AProgramThatFailsIsNoSuccessThoughTheKernelAgrees) {
    EXPECT_EQ(written(false, "sleep 0.1; exit 3"), "pmset ended with code 3.");
    EXPECT_NE(written(false, "kill -9 $$"), "");
    const auto unreadable = [] { return std::unexpected(PlatformError{"", 0, "unreadable"}); };
    EXPECT_EQ(PmsetSleepSetting(unreadable, "/bin/true").writeDisabled(false).error().description,
              "unreadable");
    EXPECT_FALSE(PmsetSleepSetting([] { return false; }, folder / "missing").writeDisabled(false));
}

TEST_F(PmsetSetting, AWriteGivesUpInTimeAndLeavesNothingRunning) {
    EXPECT_EQ(written(true, "true"), "The system has not taken the setting over in time.");
    EXPECT_GE(seconds, 1);
    EXPECT_LT(seconds, 3);
    EXPECT_EQ(written(false, "echo $$ > process; exec sleep 60"), "pmset has not ended in time.");
    EXPECT_LT(seconds, 3);
    EXPECT_EQ(kill(std::stoi(content("process")), 0), -1) << "it is still there";
}

} // namespace
} // namespace wakeloft
