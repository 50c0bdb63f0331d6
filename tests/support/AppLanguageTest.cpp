#include "support/AppLanguage.h"

#include <gtest/gtest.h>

namespace wakeloft {
namespace {

TEST(AppLanguage, KeepsTheUsersRegionUnlessTheLanguageHasItsOwn) {
    const auto resolved = [](const char* preferred, const char* base) {
        return AppLanguage::resolvedLocale({preferred, "en"}, {base}).identifier;
    };
    EXPECT_EQ(resolved("de", "fr_CH"), "de_CH");
    EXPECT_EQ(resolved("zh-Hant", "zh_TW.UTF-8@euro"), "zh_Hant_TW");
    EXPECT_EQ(resolved("ar", "ar_EG@numbers=latn"), "ar_EG@numbers=latn");
    EXPECT_EQ(resolved("es-419", "en_US"), "es_419");
}

TEST(AppLanguage, FollowsTheFirstLanguagesDirection) {
    for (const char* mirrored : {"ar", "he_IL.UTF-8", "az-Arab"})
        EXPECT_EQ(AppLanguage::direction({mirrored, "en"}), LayoutDirection::rightToLeft) << mirrored;
    for (const char* plain : {"en", "ur-Latn", "", "arn"})
        EXPECT_EQ(AppLanguage::direction({plain, "ar"}), LayoutDirection::leftToRight) << plain;
}

} // namespace
} // namespace wakeloft
