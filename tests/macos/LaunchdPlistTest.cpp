#include "lease/LidHelperService.h"

#include <gtest/gtest.h>

#include <fstream>
#include <sstream>

namespace wakeloft {
namespace {

/// As a property list file words it, without the blanks.
struct Words {
    std::string operator()(bool value) const { return value ? "<true/>" : "<false/>"; }
    std::string operator()(const std::string& value) const { return "<string>" + value + "</string>"; }
    std::string operator()(const PropertyListValue::Array& values) const {
        std::string text = "<array>";
        for (const auto& each : values)
            text += std::visit(*this, each.value);
        return text + "</array>";
    }
    std::string operator()(const PropertyListValue::Dictionary& entries) const {
        std::string text = "<dict>";
        for (const auto& [key, value] : entries)
            text += "<key>" + key + "</key>" + std::visit(*this, value.value);
        return text + "</dict>";
    }
};

TEST(LaunchdPlist, IsWhatTheHelperIsCalledAndWhereItLies) {
    const std::string folder = WAKELOFT_MACOS_PACKAGING;
    std::ifstream file(folder + "/" + LidHelperService::plistName);
    std::string text;
    for (std::string line; std::getline(file, line);)
        text += line.substr(std::min(line.find_first_not_of(' '), line.size()));
    const auto start = text.find("<dict>");
    ASSERT_NE(start, std::string::npos);
    EXPECT_EQ(text.substr(start), std::visit(Words(), LidHelperService::launchdPlist().value) + "</plist>");
}

} // namespace
} // namespace wakeloft
