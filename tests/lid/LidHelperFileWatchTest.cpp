#include "lid/LidHelperFileWatch.h"

#include <gtest/gtest.h>

namespace wakeloft {
namespace {

using Finding = LidHelperFileWatch::Finding;

TEST(LidHelperFileWatch, JudgesAFileOnceForEachOfItsIdentities) {
    std::optional<LidHelperFileWatch::Identity> file = {{.device = 1, .inode = 2, .size = 3}};
    std::optional<std::string> hash = "running";
    int judgements = 0;
    LidHelperFileWatch watch(
        "/helper", "running", {.device = 1, .inode = 2}, [&](const std::string&) { return file; },
        [&](const std::string&) {
            ++judgements;
            return hash;
        });
    const auto expectLook = [&](const Finding& finding, bool hasChanged) {
        const auto look = watch.look();
        EXPECT_EQ(look.finding, finding);
        EXPECT_EQ(look.hasChanged, hasChanged);
    };
    expectLook(Finding::running(), true);
    const auto running = std::exchange(file, std::nullopt);
    expectLook(Finding::missing(), true);
    file = running;
    expectLook(Finding::running(), true);
    EXPECT_EQ(judgements, 1);      // what was found before it went is still known
    file->modifiedNanoseconds = 1; // touched
    expectLook(Finding::running(), false);
    EXPECT_EQ(judgements, 2);
    file->inode = 9; // the same code, copied
    expectLook(Finding::replaced("running"), true);
    hash = "next";
    file = {{.device = 1, .inode = 2, .size = 6}}; // written over in place
    expectLook(Finding::replaced("next"), true);
    hash.reset();
    file->size = 4;
    expectLook(Finding::unrecognised(), true);
}

} // namespace
} // namespace wakeloft
