#include "lid/LidHelperFileWatch.h"

#include <gtest/gtest.h>

namespace wakeloft {
namespace {

using Finding = LidHelperFileWatch::Finding;

TEST(LidHelperFileWatch, TellsTheRunningHelpersFileFromAnother) {
    const LidHelperFileWatch::Identity running{.device = 1, .inode = 2, .size = 3};
    std::optional file = running;
    std::optional<std::string> hash = "running";
    LidHelperFileWatch watch(
        "/helper", "running", running.file(), [&](const std::string&) { return file; },
        [&](const std::string&) { return hash; });
    EXPECT_EQ(watch.look().finding, Finding::running());
    EXPECT_FALSE(watch.look().hasChanged);
    file.reset();
    EXPECT_EQ(watch.look().finding, Finding::missing());
    file = running;
    file->modifiedNanoseconds = 1; // back, and touched
    EXPECT_EQ(watch.look().finding, Finding::running());
    file->inode = 9; // the same code, copied
    EXPECT_EQ(watch.look().finding, Finding::replaced("running"));
    hash.reset();
    file->size = 4; // written over in place
    EXPECT_EQ(watch.look().finding, Finding::unrecognised());
}

} // namespace
} // namespace wakeloft
