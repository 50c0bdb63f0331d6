#include "GettextLocalizer.h"
#include "IcuDurationFormatter.h"

#include <gtest/gtest.h>

#include <cstdlib>

/// The gettext manual's way to tell that the languages have changed. Programs settle theirs once.
extern "C" int _nl_msg_cat_cntr; // NOLINT(bugprone-reserved-identifier,readability-identifier-naming)

namespace wakeloft {
namespace {

GettextLocalizer localizerFor(const char* languages, const char* locale) {
    unsetenv("LC_ALL");
    setenv("LANGUAGE", languages, 1);
    setenv("LANG", locale, 1);
    ++_nl_msg_cat_cntr;
    return GettextLocalizer(WAKELOFT_CATALOGUES);
}

TEST(Durations, FollowTheLocale) {
    using Pattern = DurationFormatter::TimePattern;
    using Width = DurationFormatter::Width;
    const IcuDurationFormatter words;
    EXPECT_EQ(words.units({1, 30}, Width::abbreviated, {"en"}), "1 hr, 30 min");
    EXPECT_EQ(words.units({0, 0}, Width::spoken, {"de"}), "0 Minuten");
    EXPECT_EQ(words.units({0, 30}, Width::abbreviated, {"ar_EG"}), "٣٠ د");
    EXPECT_EQ(words.time(360'007, Pattern::hourMinuteSecond, {"en"}), "100:00:07");
    EXPECT_EQ(words.time(247, Pattern::minuteSecond, {"en"}), "4:07");
    EXPECT_EQ(words.time(3909, Pattern::hourMinuteSecond, {"ar_EG"}), "١:٠٥:٠٩");
}

TEST(Texts, AreInTheNearestCataloguesLanguage) {
    for (const auto& [asked, found] : {std::pair{"zh_HK", "zh-Hant"},
                                       {"zh_Hans_HK", "zh-Hans"},
                                       {"zh_SG.UTF-8", "zh-Hans"},
                                       {"zh", "zh-Hans"},
                                       {"es_419", "es"},
                                       {"fr_CA", "fr-CA"},
                                       {"pt_BR", "en"},
                                       {"\xff\xfe", "en"}}) {
        EXPECT_EQ(localizerFor("", asked).language().identifier, found) << asked;
        EXPECT_EQ(localizerFor(asked, "it_IT.UTF-8").language().identifier, found) << asked;
    }
    EXPECT_EQ(localizerFor("pt:zh_HK:de", "en_US.UTF-8").language().identifier, "zh-Hant");
    EXPECT_EQ(localizerFor("", "nl_CH.UTF-8").locale(), Locale{"en_CH"}); // there is no Dutch
    for (const char* locale : {"C", "xx_YY.UTF-8", ""})
        EXPECT_EQ(localizerFor("", locale).text("Your Mac can sleep as usual."),
                  "Your computer can sleep as usual.");
    EXPECT_EQ(localizerFor("en:zh_HK", "de_DE.UTF-8").language().identifier, "en");
    unsetenv("LANGUAGE");
}

} // namespace
} // namespace wakeloft
