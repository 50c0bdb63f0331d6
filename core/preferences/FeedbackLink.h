#pragma once

#include <array>
#include <optional>
#include <string>
#include <string_view>

namespace wakeloft {

/// The version of an operating system.
struct OperatingSystemVersion {
    int major = 0;
    int minor = 0;
    int patch = 0;
};

/// The address of the feedback web page. Its host is a setting of the build.
struct FeedbackLink {
    /// The languages that have a page of their own, told apart to the letter.
    static constexpr std::array<std::string_view, 12> languages = {
        "ar", "de", "es", "fr", "fr-CA", "it", "ja", "pl", "ru", "uk", "zh-Hans", "zh-Hant"};

    /// The page in English. Stops the process where the build's host is none.
    static const std::string& form();

    /// The page on `host`. Stops the process where `host` is no host name: that is a fault of the build.
    static std::string formAt(std::string_view host);

    /// "14.6.1"; a patch of zero is left out.
    static std::string macOSVersion(const OperatingSystemVersion& version);

    /// The page in the user's language, told of what is given and not empty. Only macOS names the system: the
    /// page knows no other.
    static std::string url(const std::optional<std::string>& appVersion,
                           const std::optional<std::string>& macOSVersion,
                           const std::optional<std::string>& language);
};

} // namespace wakeloft
