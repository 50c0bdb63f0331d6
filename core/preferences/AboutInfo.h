#pragma once

#include "support/TimeZone.h"
#include "support/UserDefaults.h"

#include <map>
#include <optional>
#include <string>

namespace wakeloft {

/// What a build says of itself, under the names of an application bundle.
using InfoDictionary = std::map<std::string, DefaultsValue>;

/// The program's version, as it is shown and sent with feedback.
struct AboutInfo {
    static constexpr const char* versionKey = "CFBundleShortVersionString";
    static constexpr const char* buildKey = "CFBundleVersion";

    std::string version; ///< never empty
    std::string build;   ///< empty where the build has no number

    /// Nothing where there is no version.
    static std::optional<AboutInfo> fromInfoDictionary(const std::optional<InfoDictionary>& dictionary);

    /// "1.4 (212)"; the version alone where the build says no more than that.
    [[nodiscard]] std::string formattedVersion() const;

    /// The local year of `date`.
    static int copyrightYearOn(Date date, const TimeZone& timeZone);

    bool operator==(const AboutInfo&) const = default;
};

} // namespace wakeloft
