#include "lid/LidHelperFileWatch.h"

#include <gtest/gtest.h>

namespace wakeloft {
namespace {

using Finding = LidHelperFileWatch::Finding;

struct FileWatch : testing::Test {
    std::optional<LidHelperFileWatch::Identity> file = {{.device = 1, .inode = 2, .size = 3}};
    std::optional<std::string> hash = "running";
    int judgements = 0;
    LidHelperFileWatch watch{"/helper",
                             "running",
                             {.device = 1, .inode = 2},
                             [this](const std::string&) { return file; },
                             [this](const std::string& path) {
                                 EXPECT_EQ(path, "/helper");
                                 ++judgements;
                                 return hash;
                             }};

    void expectLook(const Finding& finding, bool hasChanged) {
        const auto look = watch.look();
        EXPECT_EQ(look.finding, finding);
        EXPECT_EQ(look.hasChanged, hasChanged);
    }
};

TEST_F(FileWatch, JudgesAFileOnceForEachOfItsIdentities) {
    expectLook(Finding::running(), true);
    expectLook(Finding::running(), false);
    EXPECT_EQ(judgements, 1);
    file->modifiedNanoseconds = 1; // touched
    expectLook(Finding::running(), false);
    EXPECT_EQ(judgements, 2);

    const auto running = file;
    file.reset();
    expectLook(Finding::missing(), true);
    file = running;
    expectLook(Finding::running(), true);
    EXPECT_EQ(judgements, 2); // what was found before it went is still known
    hash.reset();
    file->size = 4;
    expectLook(Finding::unrecognised(), true);
    expectLook(Finding::unrecognised(), false);
    EXPECT_EQ(judgements, 3);
}

TEST_F(FileWatch, OtherCodeOrAnotherFileIsAReplacement) {
    expectLook(Finding::running(), true);
    file->inode = 9; // the same code, copied
    expectLook(Finding::replaced("running"), true);
    file->device = 8;
    expectLook(Finding::replaced("running"), false);
    hash = "next";
    file->size = 5;
    expectLook(Finding::replaced("next"), true);
    file = {{.device = 1, .inode = 2, .size = 6}}; // written over in place
    expectLook(Finding::replaced("next"), false);
}

TEST_F(FileWatch, OnlyAReplacedHelperThatOwnsNothingStepsAside) {
    const auto stepsAside = LidHelperFileWatch::stepsAside;
    EXPECT_TRUE(stepsAside(Finding::replaced("next"), false, false));
    EXPECT_FALSE(stepsAside(Finding::replaced("next"), true, false));
    EXPECT_FALSE(stepsAside(Finding::replaced("next"), false, true));
    for (const auto& other : {Finding::running(), Finding::missing(), Finding::unrecognised()})
        EXPECT_FALSE(stepsAside(other, false, false));
}

} // namespace
} // namespace wakeloft
