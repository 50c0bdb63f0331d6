#include "GettextLocalizer.h"
#include "IcuDurationFormatter.h"

#include <gtest/gtest.h>

#include <cstdlib>

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
        EXPECT_FALSE(localizer.isRightToLeft());
    }
}

TEST(GettextLocalizer, FormatsFollowTheUsersRegion) {
    unsetenv("LC_ALL");
    unsetenv("LANGUAGE");
    setenv("LANG", "de_CH.UTF-8", 1);
    EXPECT_EQ(GettextLocalizer(WAKELOFT_CATALOGUES).locale(), Locale{"en_CH"});
    setenv("LANG", "C.UTF-8", 1);
    EXPECT_EQ(GettextLocalizer(WAKELOFT_CATALOGUES).locale(), Locale{"en"});
}

} // namespace
} // namespace wakeloft
