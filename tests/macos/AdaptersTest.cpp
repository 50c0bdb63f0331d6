#include "AppleDoubles.h"
#include "CodeSigningIdentity.h"
#include "IOKitSleepBlocker.h"
#include "RunningLidHelper.h"
#include "SleepDisabledProperty.h"
#include "SystemMachineConditions.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <cstring>
#include <fstream>

namespace wakeloft {
namespace {

using Calls = std::vector<std::string>;
using Finding = LidHelperFileWatch::Finding;

struct MacAdapters : testing::Test {
    MacAdapters() { apple = {}; }
    ~MacAdapters() override { EXPECT_EQ(apple.liveObjects, 0) << "leaked, or released too often"; }
};

TEST_F(MacAdapters, TheBlockerHoldsOneAssertionUntilItLetsGoOrEnds) {
    const std::string create = "create PreventUserIdleSystemSleep 255 Wakeloft is keeping this Mac awake 0";
    {
        IOKitSleepBlocker blocker("Wakeloft is keeping this Mac awake");
        blocker.release();
        EXPECT_EQ(apple.calls, Calls());
        apple.failing = "IOPMAssertionCreateWithName";
        const auto refused = blocker.engage();
        ASSERT_FALSE(refused);
        EXPECT_EQ(refused.error(), Error(SleepBlockerError::assertionFailed(-536870212)));
        EXPECT_FALSE(blocker.isEngaged());
        apple = {};
        EXPECT_TRUE(blocker.engage() && blocker.engage());
        EXPECT_TRUE(blocker.isEngaged());
        blocker.release();
        blocker.release();
        EXPECT_FALSE(blocker.isEngaged());
        EXPECT_EQ(apple.calls, Calls({create, "release 7"}));
        EXPECT_TRUE(blocker.engage());
    }
    EXPECT_EQ(apple.calls, Calls({create, "release 7", create, "release 7"}));
}

TEST_F(MacAdapters, ConditionsThatCannotBeReadGiveNoHeatWarning) {
    const SystemMachineConditions conditions;
    for (const auto& [source, isOnBattery] :
         std::map<std::string, bool>{{"Battery Power", true}, {"AC Power", false}, {"UPS Power", false}}) {
        apple.powerSource = source;
        EXPECT_EQ(conditions.isOnBattery(), isOnBattery) << source;
    }
    apple.powerSource.reset();
    EXPECT_FALSE(conditions.isOnBattery());

    EXPECT_FALSE(conditions.hasExternalDisplay());
    apple.displays = {true, false};
    EXPECT_TRUE(conditions.hasExternalDisplay());
    apple.displays.assign(32, true);
    apple.displays.push_back(false); // one more than is looked at
    EXPECT_FALSE(conditions.hasExternalDisplay());
    EXPECT_EQ(apple.displayCapacity, 32U);
    apple.failing = "CGGetOnlineDisplayList";
    EXPECT_TRUE(conditions.hasExternalDisplay());
}

TEST_F(MacAdapters, TheKernelsSleepSettingIsABooleanOrWasNeverSet) {
    EXPECT_EQ(readSleepDisabledProperty(), false);
    apple.sleepDisabled = "true";
    EXPECT_EQ(readSleepDisabledProperty(), true);
    apple.sleepDisabled = "false";
    EXPECT_EQ(readSleepDisabledProperty(), false);
    apple.sleepDisabled = "1";
    EXPECT_FALSE(readSleepDisabledProperty());
    apple.failing = "IOServiceGetMatchingService";
    EXPECT_FALSE(readSleepDisabledProperty());
}

TEST_F(MacAdapters, AProcessKnowsItsTeamAndItsCode) {
    using Identity = CodeSigningIdentity;
    constexpr unsigned hash = 5;
    constexpr unsigned team = 14;
    EXPECT_EQ(Identity::currentTeamIdentifier(), std::nullopt);
    EXPECT_EQ(Identity::currentCodeDirectoryHash(), std::nullopt);
    const std::string header(8, '\x01');
    apple.codeSigning = {{team, header + "ABCDE12345" + '\0' + "rest"},
                         {hash, std::string("\x00\x0f\xf0\xff", 4) + std::string(16, '\x2a')}};
    EXPECT_EQ(Identity::currentTeamIdentifier(), "ABCDE12345");
    EXPECT_EQ(Identity::currentCodeDirectoryHash(), "000ff0ff2a2a2a2a2a2a2a2a2a2a2a2a2a2a2a2a");
    apple.codeSigning[team] = header + std::string(64, 'A'); // no end in sight
    EXPECT_EQ(Identity::currentTeamIdentifier(), std::string(64, 'A'));
    apple.codeSigning[team] = header;
    EXPECT_EQ(Identity::currentTeamIdentifier(), std::nullopt);

    EXPECT_EQ(Identity::currentDesignatedRequirement(), "identifier x");
    for (const auto& step : Calls(apple.calls)) {
        apple.failing = step;
        EXPECT_EQ(Identity::currentDesignatedRequirement(), std::nullopt) << step;
    }
}

TEST_F(MacAdapters, AFilesHashIsTakenOnlyAfterItsSignatureWasFoundGood) {
    apple.codeDirectoryHash = "\xab\x01";
    const auto hash = [] { return CodeSigningIdentity::codeDirectoryHashOfCodeAt("/a/b", "wanted"); };
    EXPECT_EQ(hash(), "ab01");
    EXPECT_EQ(apple.calls, Calls({"SecStaticCodeCreateWithPath", "SecRequirementCreateWithString",
                                  "SecStaticCodeCheckValidity wanted", "SecCodeCopySigningInformation"}));
    for (const auto* step :
         {"SecStaticCodeCreateWithPath", "SecRequirementCreateWithString", "SecStaticCodeCheckValidity",
          "SecCodeCopySigningInformation", "CFDictionaryGetValue"}) {
        apple.failing = step;
        EXPECT_EQ(hash(), std::nullopt) << step;
    }
}

TEST_F(MacAdapters, TheLaunchedPathIsTheOneThatTheKernelRecorded) {
    const auto record = [](const std::string& text) {
        std::vector<char> bytes(sizeof(int), '\x01');
        bytes.insert(bytes.end(), text.begin(), text.end());
        return bytes;
    };
    apple.arguments = record(std::string("/Apps/Helper\0\0\0Helper\0PATH=/bin\0", 31));
    EXPECT_EQ(launchedPath(1), "/Apps/Helper");
    for (const auto& text :
         {std::string("Helper\0", 7), std::string("\0/Apps", 6), std::string("/Apps/Hel"), std::string()}) {
        apple.arguments = record(text);
        EXPECT_EQ(launchedPath(1), std::nullopt) << text;
    }
    apple.arguments = {'\x01'};
    EXPECT_EQ(launchedPath(1), std::nullopt);
    apple.failing = "sysctl";
    EXPECT_EQ(launchedPath(1), std::nullopt);
}

TEST_F(MacAdapters, ARunningHelperTellsItsOwnFileFromAnother) {
    const auto path = testing::TempDir() + "wakeloft-helper-file";
    std::ofstream(path) << "helper";
    struct stat status{};
    ASSERT_EQ(stat(path.c_str(), &status), 0);
    apple.device = static_cast<std::uint32_t>(status.st_dev);
    apple.inode = status.st_ino;
    apple.codeDirectoryHash = "\x01";
    const auto found = [&](const std::string& runningHash) {
        auto watch = watchForRunningHelper(path, runningExecutable(), runningHash, "ABCDE12345");
        return watch.value().find();
    };
    EXPECT_EQ(found("01"), Finding::running());
    EXPECT_EQ(apple.calls.at(2), "SecStaticCodeCheckValidity anchor apple generic and identifier "
                                 "\"com.wakeloft.app.lidhelper\" and certificate leaf[subject.OU] = "
                                 "\"ABCDE12345\"");
    EXPECT_EQ(found("02"), Finding::replaced("01"));
    apple.inode += 1;
    EXPECT_EQ(found("01"), Finding::replaced("01"));
    apple.failing = "SecStaticCodeCheckValidity";
    EXPECT_EQ(found("01"), Finding::unrecognised());
    std::remove(path.c_str());
    EXPECT_EQ(found("01"), Finding::missing());
}

TEST_F(MacAdapters, AHelperThatDoesNotKnowItselfWatchesNothing) {
    apple.inode = 5;
    const auto file = runningExecutable();
    EXPECT_TRUE(watchForRunningHelper("/a", file, "01", "ABCDE12345"));
    EXPECT_FALSE(watchForRunningHelper(std::nullopt, file, "01", "ABCDE12345"));
    EXPECT_FALSE(watchForRunningHelper("/a", std::nullopt, "01", "ABCDE12345"));
    EXPECT_FALSE(watchForRunningHelper("/a", file, std::nullopt, "ABCDE12345"));
    EXPECT_FALSE(watchForRunningHelper("/a", file, "01", std::nullopt));
    EXPECT_FALSE(watchForRunningHelper("/a", file, "01", "abcde12345"));
    apple.inode = 0; // no file is behind the region
    EXPECT_EQ(runningExecutable(), std::nullopt);
    apple.failing = "proc_pidinfo";
    EXPECT_EQ(runningExecutable(), std::nullopt);
}

} // namespace
} // namespace wakeloft
