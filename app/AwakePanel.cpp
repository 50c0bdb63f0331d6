#include "AwakePanel.h"

#include "session/AwakeDuration.h"
#include "status/AwakeExplanation.h"
#include "status/AwakeSessionControls.h"
#include "status/CountdownText.h"
#include "status/SpokenStatus.h"

#include <utility>

namespace wakeloft {

namespace {

using Kind = PanelAction::Kind;

/// Keeps a left-to-right piece, such as a countdown, whole inside right-to-left text.
std::string isolated(const std::string& text) {
    return "\u2066" + text + "\u2069";
}

const char* explanationKey(AwakeExplanation::Case explanation) {
    switch (explanation) {
    case AwakeExplanation::sleepsNormally:
        return "Your Mac can sleep as usual.";
    case AwakeExplanation::awakeIndefinitely:
        return "Your Mac won't fall asleep on its own. Closing the lid still puts it to sleep.";
    case AwakeExplanation::awakeUntilSessionEnds:
        return "Your Mac won't fall asleep until the session ends. Closing the lid still puts it to sleep.";
    case AwakeExplanation::awakeWithLidClosedIndefinitely:
        return "Your Mac won't fall asleep, even with the lid closed.";
    case AwakeExplanation::awakeWithLidClosedUntilSessionEnds:
        return "Your Mac won't fall asleep until the session ends, even with the lid closed.";
    }
    return "";
}

/// The sentence for a length that has one of its own. Whole sentences read better in many languages, and a
/// menu that nobody opens costs no formatter.
const char* presetKey(const AwakeDuration& preset) {
    constexpr Seconds minute = 60;
    constexpr Seconds hour = 3600;
    if (preset.seconds == 30 * minute)
        return "Stay awake for 30 minutes";
    if (preset.seconds == hour)
        return "Stay awake for 1 hour";
    if (preset.seconds == 2 * hour)
        return "Stay awake for 2 hours";
    return nullptr;
}

} // namespace

AwakePanel::AwakePanel(AwakeController& controller, const Localizer& localizer,
                       const DurationFormatter& formatter, Locale locale, Shell shell)
    : controller_(controller),
      localizer_(localizer),
      formatter_(formatter),
      locale_(std::move(locale)),
      shell_(std::move(shell)),
      controllerChanged_(controller.changed().subscribe([this] { changed_.emit(); })) {}

PanelContent AwakePanel::content() const {
    PanelContent content;
    content.icon = icon();
    content.title = localizer_.text("Wakeloft");
    content.spokenStatus = spokenStatus();
    content.statusLine = statusLine();
    content.statusLineTicks = controller_.isOn() && controller_.activeUntil();
    content.explanation = explanation();
    content.mainButton = mainButton();
    if (AwakeSessionControls::shown(controller_.isOn(), controller_.activeUntil()) ==
        AwakeSessionControls::cancelTimer) {
        content.sessionButtons = {
            {localizer_.text("Stay awake without a timer"), "", {Kind::stayAwakeWithoutTimer, 0}}};
    } else {
        content.sessionCaption = localizer_.text("Stay awake for");
        for (const auto& preset : AwakeDuration::presets)
            content.sessionButtons.push_back({preset.label(locale_, formatter_),
                                              content.sessionCaption + " " +
                                                  formatter_.units(HoursAndMinutes::rounding(preset.seconds),
                                                                   DurationFormatter::Width::spoken, locale_),
                                              {Kind::startSession, preset.seconds}});
    }
    content.notices = notices();
    content.isRightToLeft = localizer_.isRightToLeft();
    return content;
}

TrayContent AwakePanel::trayContent() const {
    TrayContent content;
    content.icon = icon();
    content.spokenLabel = spokenIconLabel();
    content.toolTipTitle = content.spokenLabel;
    content.toolTipText = explanation();
    const TrayMenuEntry separator;
    content.menu = {{localizer_.text("Open Wakeloft"), {Kind::openPanel, 0}}, separator};
    // Not the button's toggle: a host may deliver a click after the state that it was made for.
    content.menu.push_back(
        {mainButton().title, {controller_.isOn() ? Kind::turnOff : Kind::stayAwakeWithoutTimer, 0}});
    if (content.icon.showsTimerBadge) {
        content.menu.push_back(
            {localizer_.text("Stay awake without a timer"), {Kind::stayAwakeWithoutTimer, 0}});
    } else {
        for (const auto& preset : AwakeDuration::presets)
            content.menu.push_back({presetSentence(preset), {Kind::startSession, preset.seconds}});
    }
    content.menu.push_back(separator);
    content.menu.push_back({localizer_.text("Quit Wakeloft"), {Kind::quit, 0}});
    content.isRightToLeft = localizer_.isRightToLeft();
    return content;
}

void AwakePanel::perform(const PanelAction& action) {
    switch (action.kind) {
    case Kind::none:
        break;
    case Kind::openPanel:
        shell_.openPanel();
        break;
    case Kind::toggle:
        controller_.toggle();
        break;
    case Kind::startSession:
        controller_.turnOnFor(action.seconds);
        break;
    case Kind::stayAwakeWithoutTimer:
        controller_.turnOnFor(std::nullopt);
        break;
    case Kind::turnOff:
        controller_.turnOff();
        break;
    case Kind::quit:
        shell_.quit();
        break;
    }
}

void AwakePanel::opened() {
    controller_.checkExpiry();
}

void AwakePanel::report(Trouble trouble, std::string sentence) {
    auto& shown = troubles_[trouble];
    if (shown == sentence)
        return;
    shown = std::move(sentence);
    changed_.emit();
}

std::string AwakePanel::presetSentence(const AwakeDuration& preset) const {
    if (const char* key = presetKey(preset))
        return localizer_.text(key);
    return filled(localizer_.text("Stay awake for {duration}"), "{duration}",
                  preset.label(locale_, formatter_));
}

std::string AwakePanel::explanation() const {
    return localizer_.text(
        explanationKey(AwakeExplanation::describing(controller_.isOn(), controller_.activeUntil(), false)));
}

std::string AwakePanel::statusLine() const {
    if (!controller_.isOn())
        return localizer_.text("Off");
    const auto remaining = controller_.remaining();
    if (!remaining)
        return localizer_.text("On");
    auto countdown = CountdownText::formatted(*remaining, locale_, formatter_);
    if (localizer_.isRightToLeft())
        countdown = isolated(countdown);
    return filled(localizer_.text("On · {countdown} left"), "{countdown}", countdown);
}

std::string AwakePanel::spokenStatus() const {
    const auto status = SpokenStatus::describing(controller_.isOn(), controller_.remaining());
    if (const auto* left = std::get_if<SpokenStatus::TimeLeft>(&status.value))
        return filled(localizer_.text("Wakeloft, on, {duration} left"), "{duration}",
                      formatter_.units(HoursAndMinutes::rounding(left->duration.seconds),
                                       DurationFormatter::Width::spoken, locale_));
    if (std::holds_alternative<SpokenStatus::LessThanAMinuteLeft>(status.value))
        return localizer_.text("Wakeloft, on, less than a minute left");
    return localizer_.text(std::holds_alternative<SpokenStatus::On>(status.value) ? "Wakeloft, on"
                                                                                  : "Wakeloft, off");
}

std::string AwakePanel::spokenIconLabel() const {
    using Label = MenuBarIcon::SpokenLabel;
    using Table = Localizer::Table;
    switch (icon().spokenLabel()) {
    case Label::off:
        return localizer_.text("Wakeloft: off");
    case Label::on:
        return localizer_.text("Wakeloft: on");
    case Label::onWithTimerRunning:
        return localizer_.text("Wakeloft: on, timer running");
    case Label::onWithLidClosed:
        return localizer_.text(Table::deepwake, "Wakeloft: Deepwake on");
    case Label::onWithLidClosedAndTimerRunning:
        return localizer_.text(Table::deepwake, "Wakeloft: Deepwake on, timer running");
    }
    return "";
}

std::string AwakePanel::failureText(const AwakeFailure& failure) const {
    if (const auto* refused = std::get_if<AwakeFailure::AssertionRefused>(&failure.value))
        return filled(localizer_.text("macOS couldn't keep your Mac awake (IOKit error {code})."), "{code}",
                      std::to_string(refused->code));
    return std::get<AwakeFailure::Reported>(failure.value).message;
}

std::vector<PanelNotice> AwakePanel::notices() const {
    std::vector<PanelNotice> notices;
    if (controller_.lastFailure() || (controller_.isRequested() && !controller_.isOn())) {
        PanelNotice failure{PanelNotice::Symbol::warning, "", std::nullopt};
        if (controller_.lastFailure())
            failure.text = failureText(*controller_.lastFailure());
        if (controller_.isRequested() && !controller_.isOn())
            failure.link =
                PanelButton{localizer_.text("Don't retry when Wakeloft opens"), "", {Kind::turnOff, 0}};
        notices.push_back(std::move(failure));
    }
    if (controller_.limitation())
        notices.push_back({PanelNotice::Symbol::information,
                           filled(localizer_.text("Sleep is held off in part only. {reason}"), "{reason}",
                                  failureText(*controller_.limitation())),
                           std::nullopt});
    for (const auto& [trouble, sentence] : troubles_)
        if (!sentence.empty())
            notices.push_back({PanelNotice::Symbol::warning, sentence, std::nullopt});
    return notices;
}

PanelButton AwakePanel::mainButton() const {
    return {localizer_.text(controller_.isOn() ? "Turn Off" : "Turn On"), "", {Kind::toggle, 0}};
}

MenuBarIcon AwakePanel::icon() const {
    return MenuBarIcon::current(controller_.isOn(), controller_.activeUntil(), false);
}

} // namespace wakeloft
