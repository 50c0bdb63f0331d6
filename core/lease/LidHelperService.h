#pragma once

#include "support/Date.h"

#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

namespace wakeloft {

/// A value of a property list, as far as ours need one. Entries of a dictionary keep their order.
struct PropertyListValue {
    using Array = std::vector<PropertyListValue>;
    struct Entry;
    using Dictionary = std::vector<Entry>;

    std::variant<bool, std::string, Array, Dictionary> value;

    bool operator==(const PropertyListValue&) const = default;
};

struct PropertyListValue::Entry {
    std::string key;
    PropertyListValue value;

    bool operator==(const Entry&) const = default;
};

/// The helper's fixed names and times, and the texts that both sides make of them.
struct LidHelperService {
    static constexpr const char* appIdentifier = "com.wakeloft.app";
    static constexpr const char* label =
        "com.wakeloft.app.lidhelper"; ///< also the name that it answers under
    static constexpr const char* plistName = "com.wakeloft.app.lidhelper.plist";
    static constexpr const char* bundleProgram = "Contents/Helpers/WakeloftLidHelper";
    static constexpr Seconds exitTimeout = 5; ///< it has ended by then
    static constexpr Seconds stopRetryWindow =
        2.5; ///< how long it goes on putting the setting back at its end
    static constexpr Seconds stopRetryPause = 0.5; ///< between these tries

    /// The launch daemon's property list.
    static PropertyListValue launchdPlist();

    /// What a peer's signature must meet; nothing for an identifier or a team that no signature can have.
    static std::optional<std::string> codeRequirement(std::string_view identifier,
                                                      std::optional<std::string_view> teamIdentifier);

    /// The short version and the build number around an executable, where both are there and are version
    /// texts.
    struct Version {
        std::string version;
        std::string build;
        bool operator==(const Version&) const = default;

        /// Nothing unless both are 1 to 64 of the characters that a version may have.
        static std::optional<Version> checked(std::string version, std::string build);
    };

    /// The log line of a helper that starts. What is not known is said so.
    static std::string startLine(const std::optional<std::string>& executablePath,
                                 const std::optional<std::string>& launchedPath,
                                 const std::optional<std::string>& codeDirectoryHash,
                                 const std::optional<Version>& version);
};

} // namespace wakeloft
