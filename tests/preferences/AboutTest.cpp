#include "preferences/AboutInfo.h"
#include "preferences/FeedbackLink.h"

#include <gtest/gtest.h>

#include <cmath>

namespace wakeloft {
namespace {

struct FixedTimeZone final : TimeZone {
    Seconds ahead = 0;
    [[nodiscard]] Seconds secondsFromUtcAt(Date) const override { return ahead; }
};

std::string formatted(const InfoDictionary& dictionary) {
    const auto info = AboutInfo::fromInfoDictionary(dictionary);
    return info ? info->formattedVersion() : "none";
}

TEST(AboutInfo, TellsTheBuildWhereItSaysMore) {
    const auto text = [](const char* words) { return DefaultsValue{std::string(words)}; };
    const std::string version = "CFBundleShortVersionString";
    const std::string build = "CFBundleVersion";
    EXPECT_EQ(formatted({{version, text("1.4")}, {build, text("212")}}), "1.4 (212)");
    EXPECT_EQ(formatted({{version, text("1.4")}, {build, text("1.4")}}), "1.4");
    EXPECT_EQ(formatted({{version, text("1.4")}, {build, {212.0}}}), "1.4");
    EXPECT_EQ(formatted({{version, text("")}, {build, text("212")}}), "none");
    EXPECT_EQ(formatted({{version, {1.4}}}), "none");
    EXPECT_EQ(AboutInfo::fromInfoDictionary(std::nullopt), std::nullopt);
}

TEST(AboutInfo, TheYearTurnsAtLocalMidnight) {
    constexpr Seconds newYear2026 = 1767225600;
    constexpr Seconds hour = 3600;
    FixedTimeZone zone;
    EXPECT_EQ(AboutInfo::copyrightYearOn({newYear2026}, zone), 2026);
    EXPECT_EQ(AboutInfo::copyrightYearOn({newYear2026 - 0.5}, zone), 2025);
    zone.ahead = hour;
    EXPECT_EQ(AboutInfo::copyrightYearOn({newYear2026 - hour}, zone), 2026);
    zone.ahead = -hour;
    EXPECT_EQ(AboutInfo::copyrightYearOn({newYear2026}, zone), 2025);
    EXPECT_EQ(AboutInfo::copyrightYearOn({HUGE_VAL}, zone), 4001);
    EXPECT_EQ(AboutInfo::copyrightYearOn({std::nan("")}, zone), 1970);
}

TEST(FeedbackLink, LeadsToThePageInTheUsersLanguage) {
    const auto& form = FeedbackLink::form();
    ASSERT_TRUE(form.starts_with("https://") && form.ends_with("/feedback"));
    const auto site = form.substr(0, form.size() - std::string("/feedback").size());
    EXPECT_EQ(FeedbackLink::url("1.4 (212)", "14.6.1", "de"),
              site + "/de/feedback?app=1.4%20(212)&macos=14.6.1");
    EXPECT_EQ(FeedbackLink::url("1+1&a=ü", "", "fr-CA"), site + "/fr-CA/feedback?app=1%2B1%26a%3D%C3%BC");
    EXPECT_EQ(FeedbackLink::url(std::nullopt, "15.0", "zh-hans"), form + "?macos=15.0");
    for (const char* language : {"en", "pt", "", "de/../x"})
        EXPECT_EQ(FeedbackLink::url(std::nullopt, std::nullopt, language), form);
    EXPECT_EQ(FeedbackLink::macOSVersion({15, 0, 0}), "15.0");
    EXPECT_EQ(FeedbackLink::macOSVersion({14, 6, 1}), "14.6.1");
}

TEST(FeedbackLink, AWrongHostStopsTheProcess) {
    EXPECT_EQ(FeedbackLink::formAt("feedback.example-1.org"), "https://feedback.example-1.org/feedback");
    for (const char* host :
         {"", "example..org", "-a.org", "exa mple.org", "example.org/", "user@example.org"})
        EXPECT_DEATH(FeedbackLink::formAt(host), "as the host of its feedback page") << host;
}

} // namespace
} // namespace wakeloft
