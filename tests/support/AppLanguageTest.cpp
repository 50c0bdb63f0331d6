#include "support/AppLanguage.h"

#include <gtest/gtest.h>

namespace wakeloft {
namespace {

TEST(AppLanguage, KeepsTheUsersRegionUnlessTheLanguageHasItsOwn) {
    const auto resolved = [](const char* preferred, const char* base) {
        return AppLanguage::resolvedLocale({preferred, "en"}, {base}).identifier;
    };
    EXPECT_EQ(resolved("de", "fr_CH"), "de_CH");
    EXPECT_EQ(resolved("zh-Hant", "zh_TW.UTF-8"), "zh_Hant_TW");
    EXPECT_EQ(resolved("ar", "ar_EG@numbers=latn"), "ar_EG@numbers=latn");
    EXPECT_EQ(resolved("de", "de_AT.UTF-8@euro"), "de_AT");
    EXPECT_EQ(resolved("es-419", "en_US"), "es_419");
    EXPECT_EQ(resolved("EN", "C.UTF-8"), "en");
    EXPECT_EQ(AppLanguage::resolvedLocale({}, {"de_CH"}), Locale{"de_CH"});
}

TEST(AppLanguage, FollowsTheFirstLanguagesDirection) {
    for (const char* mirrored : {"ar", "ar-EG", "he_IL.UTF-8", "fa", "ur", "az-Arab", "AR"})
        EXPECT_EQ(AppLanguage::direction({mirrored, "en"}), LayoutDirection::rightToLeft) << mirrored;
    for (const char* plain : {"en", "de", "ur-Latn", "zh-Hans", "", "arn"})
        EXPECT_EQ(AppLanguage::direction({plain, "ar"}), LayoutDirection::leftToRight) << plain;
    const auto none = AppLanguage::preferring({}, {"de_CH"});
    EXPECT_EQ(none, (AppLanguage{"en", LayoutDirection::leftToRight, {"de_CH"}}));
}

} // namespace
} // namespace wakeloft
