#include "AppleDoubles.h"
#include "CodeSigningIdentity.h"
#include "IOKitSleepBlocker.h"
#include "RunningLidHelper.h"
#include "SleepDisabledProperty.h"
#include "SystemMachineConditions.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

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
        apple.failing = "IOPMAssertionCreateWithName";
        EXPECT_EQ(blocker.engage().error(), Error(SleepBlockerError::assertionFailed(-536870212)));
        EXPECT_FALSE(blocker.isEngaged());
        blocker.release();
        apple.failing.clear();
        EXPECT_TRUE(blocker.engage() && blocker.engage() && blocker.isEngaged());
        blocker.release();
        EXPECT_FALSE(blocker.isEngaged());
        EXPECT_TRUE(blocker.engage());
    }
    EXPECT_EQ(apple.calls, Calls({create, create, "release 7", create, "release 7"}));
}

TEST_F(MacAdapters, WhatCannotBeReadGivesNoHeatWarningAndNoSleepSetting) {
    const SystemMachineConditions conditions;
    EXPECT_FALSE(conditions.isOnBattery());
    apple.powerSource = "Battery Power";
    EXPECT_TRUE(conditions.isOnBattery());
    apple.powerSource.reset();
    EXPECT_FALSE(conditions.isOnBattery());
    apple.displays = {true};
    EXPECT_FALSE(conditions.hasExternalDisplay());
    apple.displays.push_back(false);
    EXPECT_TRUE(conditions.hasExternalDisplay());
    apple.displays.clear();
    apple.failing = "CGGetOnlineDisplayList";
    EXPECT_TRUE(conditions.hasExternalDisplay());

    EXPECT_EQ(readSleepDisabledProperty(), false); // never set
    for (const bool isDisabled : {true, false}) {
        apple.sleepDisabled = isDisabled ? "true" : "false";
        EXPECT_EQ(readSleepDisabledProperty(), isDisabled);
    }
    apple.sleepDisabled = "1"; // no boolean
    EXPECT_FALSE(readSleepDisabledProperty());
    apple.failing = "IOServiceGetMatchingService";
    EXPECT_FALSE(readSleepDisabledProperty());
}

TEST_F(MacAdapters, AProcessKnowsItsTeamItsCodeAndItsFile) {
    using Identity = CodeSigningIdentity;
    constexpr unsigned hash = 5;
    constexpr unsigned team = 14;
    EXPECT_EQ(Identity::currentTeamIdentifier(), std::nullopt);
    EXPECT_EQ(Identity::currentCodeDirectoryHash(), std::nullopt);
    apple.codeSigning = {{team, std::string(8, '\x01') + "ABCDE12345" + '\0' + "rest"},
                         {hash, std::string("\x00\x0f\xf0\xff", 4) + std::string(16, '\x2a')}};
    EXPECT_EQ(Identity::currentTeamIdentifier(), "ABCDE12345");
    EXPECT_EQ(Identity::currentCodeDirectoryHash(), "000ff0ff2a2a2a2a2a2a2a2a2a2a2a2a2a2a2a2a");
    EXPECT_EQ(Identity::currentDesignatedRequirement(), "identifier x");
    for (const auto& step : Calls(apple.calls)) {
        apple.failing = step;
        EXPECT_EQ(Identity::currentDesignatedRequirement(), std::nullopt) << step;
    }
    EXPECT_EQ(runningExecutable(), std::nullopt); // no file is behind the region

    const std::string count(sizeof(int), '\x01');
    EXPECT_EQ(launchedPathIn(count + "/Apps/Helper" + '\0' + "Helper"), "/Apps/Helper");
    for (const auto& record : {count + "Helper" + '\0', count + "/Apps/Hel", count, std::string("\x01")})
        EXPECT_EQ(launchedPathIn(record), std::nullopt) << record;
}

TEST_F(MacAdapters, ARunningHelperTellsItsOwnFileFromAnother) {
    const auto path = testing::TempDir() + "wakeloft-helper-file-" + std::to_string(getpid());
    std::ofstream(path) << "helper";
    struct stat status{};
    ASSERT_EQ(stat(path.c_str(), &status), 0);
    apple.device = static_cast<std::uint32_t>(status.st_dev);
    apple.inode = status.st_ino;
    apple.codeDirectoryHash = "\xab\x01";
    const auto file = runningExecutable();
    const auto found = [&](const std::string& runningHash) {
        return watchForRunningHelper(path, runningExecutable(), runningHash, "ABCDE12345").value().find();
    };
    EXPECT_EQ(found("ab01"), Finding::running());
    EXPECT_EQ(apple.calls.at(2), "SecStaticCodeCheckValidity anchor apple generic and identifier "
                                 "\"com.wakeloft.app.lidhelper\" and certificate leaf[subject.OU] = "
                                 "\"ABCDE12345\"");
    EXPECT_EQ(found("02"), Finding::replaced("ab01"));
    apple.inode += 1;
    EXPECT_EQ(found("ab01"), Finding::replaced("ab01"));
    for (const auto* step :
         {"SecStaticCodeCreateWithPath", "SecRequirementCreateWithString", "SecStaticCodeCheckValidity",
          "SecCodeCopySigningInformation", "CFDictionaryGetValue"}) {
        apple.failing = step;
        EXPECT_EQ(found("ab01"), Finding::unrecognised()) << step;
    }
    std::remove(path.c_str());
    EXPECT_EQ(found("ab01"), Finding::missing());

    EXPECT_FALSE(watchForRunningHelper(path, std::nullopt, "01", "ABCDE12345"));
    EXPECT_FALSE(watchForRunningHelper(path, file, "01", std::nullopt));
}

} // namespace
} // namespace wakeloft
