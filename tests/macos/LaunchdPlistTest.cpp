#include "lease/LidHelperService.h"

#include <gtest/gtest.h>

#include <fstream>

using wakeloft::LidHelperService;

TEST(LaunchdPlist, KeepsTheHelperRunningUnderItsName) {
    std::ifstream file(std::string(WAKELOFT_MACOS_PACKAGING "/") + LidHelperService::plistName);
    std::string text;
    for (std::string line; std::getline(file, line);)
        text += line.substr(std::min(line.find_first_not_of(' '), line.size()));
    const std::string label = LidHelperService::label;
    for (const std::string& entry :
         {"<key>Label</key><string>" + label + "</string>",
          "<key>BundleProgram</key><string>" + std::string(LidHelperService::bundleProgram) + "</string>",
          "<key>MachServices</key><dict><key>" + label + "</key><true/></dict>",
          std::string("<key>RunAtLoad</key><true/>"), std::string("<key>KeepAlive</key><true/>")})
        EXPECT_NE(text.find(entry), std::string::npos) << entry << " is not in " << text;
}
