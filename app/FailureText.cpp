#include "FailureText.h"

#include <utility>

namespace wakeloft {

namespace {

using Table = Localizer::Table;

struct RefusalText {
    const Localizer& localizer;

    std::string operator()(const LidHelperRefusal::SettingUnreadable& refusal) const {
        return with(refusal.detail,
                    localizer.text(Table::deepwake,
                                   "Deepwake can't start because its helper couldn't read the sleep "
                                   "setting, so nothing was changed ({detail})."));
    }
    std::string operator()(const LidHelperRefusal::SettingUnwritten& refusal) const {
        return with(
            refusal.detail,
            localizer.text(
                Table::deepwake,
                "Deepwake can't start because its helper couldn't change the sleep setting ({detail})."));
    }
    std::string operator()(const LidHelperRefusal::SettingNotPutBack& refusal) const {
        return with(refusal.detail,
                    localizer.text(Table::deepwake,
                                   "Your Mac may stay awake with the lid closed. Deepwake's helper couldn't "
                                   "restore the sleep setting and is still trying ({detail})."));
    }
    std::string operator()(const LidHelperRefusal::Unrecognized& refusal) const { return refusal.text; }
    std::string operator()(const LidHelperRefusal::DeadlineNotANumber&) const {
        return localizer.text(
            Table::deepwake,
            "Deepwake can't start because its helper was sent an end time it couldn't read.");
    }
    std::string operator()(const LidHelperRefusal::SettingOnElsewhere&) const {
        return localizer.text(Table::deepwake,
                              "Deepwake can't start because something other than Wakeloft already keeps your "
                              "Mac awake with the lid closed. That setting was left as it is.");
    }
    std::string operator()(const LidHelperRefusal::SettingTurnedOffElsewhere&) const {
        return localizer.text(Table::deepwake,
                              "Deepwake stopped because something other than Wakeloft changed the sleep "
                              "setting. Closing the lid works as usual again.");
    }

    static std::string with(const std::string& detail, std::string text) {
        return filled(std::move(text), "{detail}", detail);
    }
};

struct FailureText {
    const Localizer& localizer;

    std::string operator()(const AwakeFailure::AssertionRefused& failure) const {
        return filled(localizer.text("macOS couldn't keep your Mac awake (IOKit error {code})."), "{code}",
                      std::to_string(failure.code));
    }
    std::string operator()(const AwakeFailure::LidHelperRefused& failure) const {
        return std::visit(RefusalText{localizer}, failure.refusal.value);
    }
    std::string operator()(const AwakeFailure::Reported& failure) const { return failure.message; }
    std::string operator()(const AwakeFailure::LidHelperUnavailable&) const {
        return localizer.text(Table::deepwake, "Deepwake can't start because its helper is unavailable.");
    }
    std::string operator()(const AwakeFailure::LidHelperRequiresApproval&) const {
        return localizer.text(Table::deepwake,
                              "To use Deepwake, allow Wakeloft in System Settings, then turn it on again.");
    }
};

} // namespace

std::string failureText(const AwakeFailure& failure, const Localizer& localizer) {
    return std::visit(FailureText{localizer}, failure.value);
}

} // namespace wakeloft
