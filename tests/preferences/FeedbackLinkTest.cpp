#include "preferences/AboutInfo.h"
#include "preferences/FeedbackLink.h"

#include <gtest/gtest.h>

#include <cmath>

namespace wakeloft {
namespace {

TEST(AboutInfo, TellsTheBuildWhereItSaysMore) {
    const auto formatted = [](const DefaultsValue& version, const DefaultsValue& build) {
        const auto info = AboutInfo::fromInfoDictionary(
            InfoDictionary{{"CFBundleShortVersionString", version}, {"CFBundleVersion", build}});
        return info ? info->formattedVersion() : "none";
    };
    const DefaultsValue version{std::string("1.4")};
    EXPECT_EQ(formatted(version, {std::string("212")}), "1.4 (212)");
    EXPECT_EQ(formatted(version, version), "1.4");
    EXPECT_EQ(formatted(version, {212.0}), "1.4");
    EXPECT_EQ(formatted({std::string()}, {std::string("212")}), "none");
    EXPECT_EQ(AboutInfo::fromInfoDictionary(std::nullopt), std::nullopt);
}

TEST(AboutInfo, TheYearTurnsAtLocalMidnight) {
    struct FixedTimeZone final : TimeZone {
        Seconds ahead = 3600;
        [[nodiscard]] Seconds secondsFromUtcAt(Date) const override { return ahead; }
    } zone;
    constexpr Seconds newYear2026 = 1767225600;
    EXPECT_EQ(AboutInfo::copyrightYearOn({newYear2026 - zone.ahead}, zone), 2026);
    EXPECT_EQ(AboutInfo::copyrightYearOn({newYear2026 - zone.ahead - 0.5}, zone), 2025);
    zone.ahead = -zone.ahead;
    EXPECT_EQ(AboutInfo::copyrightYearOn({newYear2026}, zone), 2025);
    EXPECT_EQ(AboutInfo::copyrightYearOn({HUGE_VAL}, zone), 4001);
    EXPECT_EQ(AboutInfo::copyrightYearOn({std::nan("")}, zone), 1970);
}

TEST(FeedbackLink, LeadsToThePageInTheUsersLanguageAtAHostThatIsOne) {
    const auto& form = FeedbackLink::form();
    const auto site = form.substr(0, form.find("/feedback"));
    EXPECT_EQ(FeedbackLink::url("1+1&a=ü (2)", "", "fr-CA"),
              site + "/fr-CA/feedback?app=1%2B1%26a%3D%C3%BC%20(2)");
    EXPECT_EQ(FeedbackLink::url("1.4", "15.0", "zh-hans"), form + "?app=1.4&macos=15.0");
    EXPECT_EQ(FeedbackLink::url({}, {}, "de/../x"), form);
    EXPECT_EQ(FeedbackLink::macOSVersion({14, 6, 1}), "14.6.1");
    EXPECT_EQ(FeedbackLink::formAt("feedback.example-1.org"), "https://feedback.example-1.org/feedback");
    for (const char* host :
         {"", "example..org", "-a.org", "exa mple.org", "example.org/", "user@example.org"})
        EXPECT_DEATH(FeedbackLink::formAt(host), "as the host of its feedback page") << host;
}

} // namespace
} // namespace wakeloft
