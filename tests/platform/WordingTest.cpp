#include "BuildInfo.h"
#include "GettextLocalizer.h"
#include "IcuDurationFormatter.h"
#include "SystemTimeZone.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <tuple>

/// The gettext manual's way to tell that the languages have changed. Programs settle theirs once.
extern "C" int _nl_msg_cat_cntr; // NOLINT(bugprone-reserved-identifier,readability-identifier-naming)

namespace wakeloft {
namespace {

using Width = DurationFormatter::Width;
using Pattern = DurationFormatter::TimePattern;

TEST(IcuDurationFormatter, FollowsTheLocale) {
    const IcuDurationFormatter words;
    const Locale english{"en"};
    EXPECT_EQ(words.units({1, 30}, Width::abbreviated, english), "1 hr, 30 min");
    EXPECT_EQ(words.units({2, 0}, Width::abbreviated, english), "2 hr");
    EXPECT_EQ(words.units({0, 30}, Width::abbreviated, english), "30 min");
    EXPECT_EQ(words.units({0, 0}, Width::abbreviated, english), "0 min");
    EXPECT_EQ(words.units({1, 1}, Width::spoken, english), "1 hour, 1 minute");
    EXPECT_EQ(words.units({1, 30}, Width::abbreviated, {"de"}), "1 Std., 30 Min.");
    EXPECT_EQ(words.units({0, 30}, Width::abbreviated, {"ar_EG"}), "٣٠ د");
    EXPECT_EQ(words.time(3909, Pattern::hourMinuteSecond, english), "1:05:09");
    EXPECT_EQ(words.time(247, Pattern::minuteSecond, english), "4:07");
    EXPECT_EQ(words.time(7, Pattern::minuteSecond, english), "0:07");
    EXPECT_EQ(words.time(360'000, Pattern::hourMinuteSecond, english), "100:00:00");
    EXPECT_EQ(words.time(3909, Pattern::hourMinuteSecond, {"ar_EG"}), "١:٠٥:٠٩");
}

TEST(GettextLocalizer, TellsOfAComputerWhateverTheLocale) {
    unsetenv("LC_ALL");
    for (const char* language : {"C", "en_GB.UTF-8", "xx_YY.UTF-8", ""}) {
        SCOPED_TRACE(language);
        unsetenv("LANGUAGE");
        setenv("LANG", language, 1);
        const GettextLocalizer localizer(WAKELOFT_CATALOGUES);
        EXPECT_EQ(localizer.text("Your Mac can sleep as usual."), "Your computer can sleep as usual.");
        EXPECT_EQ(localizer.text("Turn On"), "Turn On");
        EXPECT_TRUE(
            localizer
                .text(Localizer::Table::deepwake,
                      "Your Mac can sleep again with the lid open or closed. Awake mode turns back on "
                      "the next time you open Wakeloft. Deepwake stays off.")
                .starts_with("Your computer"));
        EXPECT_FALSE(localizer.isRightToLeft());
    }
}

TEST(GettextLocalizer, FormatsFollowTheUsersRegion) {
    unsetenv("LC_ALL");
    unsetenv("LANGUAGE");
    setenv("LANG", "nl_CH.UTF-8", 1); // there is no Dutch
    EXPECT_EQ(GettextLocalizer(WAKELOFT_CATALOGUES).locale(), Locale{"en_CH"});
    setenv("LANG", "C.UTF-8", 1);
    EXPECT_EQ(GettextLocalizer(WAKELOFT_CATALOGUES).locale(), Locale{"en"});
    EXPECT_EQ(languageIdentifier("fr_CA"), "fr-CA");
    EXPECT_EQ(languageIdentifier("zh_TW"), "zh-Hant");
    EXPECT_EQ(languageIdentifier("zh_CN"), "zh-Hans");
}

TEST(GettextLocalizer, FindsTheNearestCatalogue) {
    unsetenv("LC_ALL");
    const auto languageFor = [](const char* languages, const char* locale) {
        setenv("LANGUAGE", languages, 1);
        setenv("LANG", locale, 1);
        ++_nl_msg_cat_cntr;
        return GettextLocalizer(WAKELOFT_CATALOGUES).language().identifier;
    };
    for (const auto& [asked, found] : {std::pair{"zh_HK", "zh-Hant"},
                                       {"zh_MO.UTF-8", "zh-Hant"},
                                       {"zh_TW", "zh-Hant"},
                                       {"zh_Hant", "zh-Hant"},
                                       {"zh-Hant-HK", "zh-Hant"},
                                       {"zh_Hans_HK", "zh-Hans"},
                                       {"zh_SG.UTF-8", "zh-Hans"},
                                       {"zh_CN", "zh-Hans"},
                                       {"zh_Hans", "zh-Hans"},
                                       {"zh", "zh-Hans"},
                                       {"de_AT.UTF-8", "de"},
                                       {"es_MX", "es"},
                                       {"es_419", "es"},
                                       {"fr_CA", "fr-CA"},
                                       {"fr_BE@euro", "fr"},
                                       {"pt_BR", "en"},
                                       {"en_GB", "en"},
                                       {"tlh", "en"},
                                       {":::", "en"},
                                       {"zh_", "zh-Hans"},
                                       {"\xff\xfe", "en"}}) {
        EXPECT_EQ(languageFor("", asked), found) << asked;
        EXPECT_EQ(languageFor(asked, "it_IT.UTF-8"), found) << asked;
    }
    EXPECT_EQ(languageFor("pt:zh_HK:de", "en_US.UTF-8"), "zh-Hant");
    EXPECT_EQ(languageFor("en:zh_HK", "de_DE.UTF-8"), "en");
    unsetenv("LANGUAGE");
}

TEST(SystemTimeZone, KnowsSummerTimeAndFollowsChanges) {
    constexpr Date winter{1767225600};
    constexpr Date summer{1751328000};
    const SystemTimeZone zone;
    for (const auto& [name, inWinter, inSummer] :
         {std::tuple{"CET-1CEST,M3.5.0,M10.5.0/3", 3600, 7200}, std::tuple{"UTC0", 0, 0}}) {
        setenv("TZ", name, 1);
        EXPECT_EQ(zone.secondsFromUtcAt(winter), inWinter);
        EXPECT_EQ(zone.secondsFromUtcAt(summer), inSummer);
    }
    unsetenv("TZ");
}

TEST(BuildInfo, TellsAVersion) {
    const auto info = AboutInfo::fromInfoDictionary(buildInfoDictionary());
    ASSERT_TRUE(info);
    EXPECT_NE(info->version.find('.'), std::string::npos);
}

} // namespace
} // namespace wakeloft
