#pragma once

#include "support/LayoutDirection.h"
#include "support/Locale.h"

#include <string>
#include <vector>

namespace wakeloft {

/// The language that the interface is in, settled once at the start: another one is for the next launch.
struct AppLanguage {
    std::string identifier = "en"; ///< as the web names languages: "de", "fr-CA", "zh-Hant"
    LayoutDirection layoutDirection = LayoutDirection::leftToRight;
    Locale locale; ///< that language with the user's regional formats

    /// `preferred` are the app's localisations in the user's order, `base` is the user's own locale.
    static AppLanguage preferring(const std::vector<std::string>& preferred, const Locale& base);

    /// That of the first; English where there is none.
    static LayoutDirection direction(const std::vector<std::string>& preferred);

    /// The first language with its own region or else that of `base`, and the keywords of `base`
    /// ("@numbers=latn"); `base` itself where there is no language. Reads "fr-CA", "zh_Hant_TW" and
    /// "de_CH.UTF-8@euro"; what is no language, script or region is left out.
    static Locale resolvedLocale(const std::vector<std::string>& preferred, const Locale& base);

    bool operator==(const AppLanguage&) const = default;
};

} // namespace wakeloft
