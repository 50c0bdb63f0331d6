#include "lease/LidHelperRefusal.h"

#include <optional>
#include <utility>

namespace wakeloft {

namespace {

constexpr std::string_view unreadable = "The sleep setting could not be read, so it was left as it is: ";
constexpr std::string_view unwritten = "The sleep setting could not be written: ";
constexpr std::string_view notPutBack =
    "The sleep setting could not be put back, and the helper is still trying: ";
constexpr std::string_view notANumber = "The lease deadline is not a number.";
constexpr std::string_view onElsewhere =
    "The sleep setting is already on, set by something other than Wakeloft, and was left as it is.";
constexpr std::string_view offElsewhere =
    "The sleep setting was turned off by something other than Wakeloft, and was left off.";

std::string joined(std::string_view prefix, const std::string& detail) {
    return std::string(prefix) + detail;
}

/// By bytes: a detail may begin in the middle of what would be one character with the prefix's end.
std::optional<std::string> detailAfter(std::string_view prefix, std::string_view text) {
    if (!text.starts_with(prefix))
        return std::nullopt;
    return std::string(text.substr(prefix.size()));
}

struct Reason {
    std::string operator()(const LidHelperRefusal::SettingUnreadable& refusal) const {
        return joined(unreadable, refusal.detail);
    }
    std::string operator()(const LidHelperRefusal::SettingUnwritten& refusal) const {
        return joined(unwritten, refusal.detail);
    }
    std::string operator()(const LidHelperRefusal::SettingNotPutBack& refusal) const {
        return joined(notPutBack, refusal.detail);
    }
    std::string operator()(const LidHelperRefusal::Unrecognized& refusal) const { return refusal.text; }
    std::string operator()(const LidHelperRefusal::DeadlineNotANumber&) const {
        return std::string(notANumber);
    }
    std::string operator()(const LidHelperRefusal::SettingOnElsewhere&) const {
        return std::string(onElsewhere);
    }
    std::string operator()(const LidHelperRefusal::SettingTurnedOffElsewhere&) const {
        return std::string(offElsewhere);
    }
};

} // namespace

LidHelperRefusal LidHelperRefusal::fromReason(std::string_view reason) {
    if (reason == notANumber)
        return deadlineNotANumber();
    if (reason == onElsewhere)
        return settingOnElsewhere();
    if (reason == offElsewhere)
        return settingTurnedOffElsewhere();
    if (auto detail = detailAfter(unreadable, reason))
        return settingUnreadable(std::move(*detail));
    if (auto detail = detailAfter(unwritten, reason))
        return settingUnwritten(std::move(*detail));
    if (auto detail = detailAfter(notPutBack, reason))
        return settingNotPutBack(std::move(*detail));
    return {Unrecognized{std::string(reason)}};
}

std::string LidHelperRefusal::reason() const {
    return std::visit(Reason(), value);
}

} // namespace wakeloft
