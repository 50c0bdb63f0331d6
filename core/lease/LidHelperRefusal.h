#pragma once

#include <string>
#include <string_view>
#include <variant>

namespace wakeloft {

/// Why the helper did not do what was asked. It crosses the process boundary as its English text, `reason()`,
/// and is told from that text alone; a text that is not known is kept whole.
struct LidHelperRefusal {
    struct SettingUnreadable {
        std::string detail;
        bool operator==(const SettingUnreadable&) const = default;
    };
    struct SettingUnwritten {
        std::string detail;
        bool operator==(const SettingUnwritten&) const = default;
    };
    struct SettingNotPutBack {
        std::string detail;
        bool operator==(const SettingNotPutBack&) const = default;
    };
    struct Unrecognized {
        std::string text;
        bool operator==(const Unrecognized&) const = default;
    };
    struct DeadlineNotANumber {
        bool operator==(const DeadlineNotANumber&) const = default;
    };
    struct SettingOnElsewhere {
        bool operator==(const SettingOnElsewhere&) const = default;
    };
    struct SettingTurnedOffElsewhere {
        bool operator==(const SettingTurnedOffElsewhere&) const = default;
    };
    std::variant<SettingUnreadable, SettingUnwritten, SettingNotPutBack, Unrecognized, DeadlineNotANumber,
                 SettingOnElsewhere, SettingTurnedOffElsewhere>
        value;

    static LidHelperRefusal settingUnreadable(std::string detail) {
        return {SettingUnreadable{std::move(detail)}};
    }
    static LidHelperRefusal settingUnwritten(std::string detail) {
        return {SettingUnwritten{std::move(detail)}};
    }
    static LidHelperRefusal settingNotPutBack(std::string detail) {
        return {SettingNotPutBack{std::move(detail)}};
    }
    static LidHelperRefusal deadlineNotANumber() { return {DeadlineNotANumber{}}; }
    static LidHelperRefusal settingOnElsewhere() { return {SettingOnElsewhere{}}; }
    static LidHelperRefusal settingTurnedOffElsewhere() { return {SettingTurnedOffElsewhere{}}; }

    /// The refusal that a reply's text tells of.
    static LidHelperRefusal fromReason(std::string_view reason);
    [[nodiscard]] std::string reason() const;

    bool operator==(const LidHelperRefusal&) const = default;
};

} // namespace wakeloft
