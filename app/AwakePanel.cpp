#include "AwakePanel.h"

#include "FailureText.h"
#include "status/AwakeSessionControls.h"

#include <cmath>
#include <utility>

namespace wakeloft {

namespace {

using Kind = PanelAction::Kind;
using Symbol = PanelNotice::Symbol;
using Table = Localizer::Table;

} // namespace

AwakePanel::AwakePanel(const Controllers& controllers, const Localizer& localizer,
                       const DurationFormatter& formatter, Locale locale, Shell shell)
    : controller_(controllers.awake),
      lid_(controllers.lid),
      loginItem_(controllers.loginItem),
      presets_(controllers.presets),
      localizer_(localizer),
      texts_(controllers.awake, localizer, formatter, std::move(locale)),
      shell_(std::move(shell)) {
    for (Signal* changed :
         {&controller_.changed(), &lid_.changed(), &loginItem_.changed(), &presets_.changed()})
        subscriptions_.push_back(changed->subscribe([this] { changed_.emit(); }));
}

PanelContent AwakePanel::content() const {
    PanelContent content;
    content.icon = icon();
    content.title = localizer_.text("Wakeloft");
    content.spokenStatus = texts_.spokenStatus();
    content.statusLine = texts_.statusLine();
    content.explanation = texts_.explanation(lid_.isOn());
    content.mainButton = mainButton();
    content.sessionButtons = sessionButtons();
    if (offersPresets() && !content.sessionButtons.empty())
        content.sessionCaption = localizer_.text("Stay awake for");
    content.deepwake = deepwake();
    content.deepwakeNotices = deepwakeNotices();
    content.notices = notices();
    content.openAtLogin = openAtLogin();
    content.loginNotices = loginNotices();
    content.isRightToLeft = localizer_.isRightToLeft();
    return content;
}

TrayContent AwakePanel::trayContent() const {
    TrayContent content;
    content.icon = icon();
    content.spokenLabel = texts_.spokenLabel(content.icon);
    content.toolTipTitle = content.spokenLabel;
    content.toolTipText = texts_.explanation(lid_.isOn());
    const TrayMenuEntry separator;
    content.menu = {{localizer_.text("Open Wakeloft"), {Kind::openPanel, 0}}, separator};
    // Not the button's toggle: a host may deliver a click after the state that it was made for.
    content.menu.push_back(
        {mainButton().title, {controller_.isOn() ? Kind::turnOff : Kind::stayAwakeWithoutTimer, 0}});
    if (offersPresets()) {
        for (const auto& preset : presets_.pinned())
            content.menu.push_back({texts_.command(preset), {Kind::startSession, preset.seconds}});
    } else {
        content.menu.push_back(
            {localizer_.text("Stay awake without a timer"), {Kind::stayAwakeWithoutTimer, 0}});
    }
    const auto lidSwitch = deepwake();
    content.menu.push_back({lidSwitch.title, lidSwitch.action, lidSwitch.isOn, lidSwitch.isEnabled});
    content.menu.push_back(separator);
    content.menu.push_back({localizer_.text("Quit Wakeloft"), {Kind::quit, 0}});
    content.isRightToLeft = localizer_.isRightToLeft();
    return content;
}

std::optional<Seconds> AwakePanel::untilStatusLineTicks() const {
    constexpr Seconds justAfter = 0.005; // no clock is so exact that it would not show a second twice
    const auto remaining = controller_.remaining();
    if (!controller_.isOn() || !remaining)
        return std::nullopt;
    return *remaining > 0 ? std::fmod(*remaining, 1) + justAfter : 1;
}

void AwakePanel::perform(const PanelAction& action) {
    switch (action.kind) {
    case Kind::none:
        break;
    case Kind::openPanel:
        shell_.openPanel();
        break;
    case Kind::toggle:
        if (controller_.isOn())
            lid_.turnOff();
        controller_.toggle();
        break;
    case Kind::startSession:
        controller_.turnOnFor(action.seconds);
        break;
    case Kind::stayAwakeWithoutTimer:
        controller_.turnOnFor(std::nullopt);
        break;
    case Kind::turnOff:
        lid_.turnOff();
        controller_.turnOff();
        break;
    case Kind::dontRetry:
        controller_.turnOff();
        break;
    case Kind::deepwakeOn: // what becomes of it is told by the controller's own state
        static_cast<void>(lid_.turnOnJoiningSessionOr(AwakeDuration::lidClosedDefault.seconds));
        break;
    case Kind::deepwakeOff:
        lid_.turnOff();
        break;
    case Kind::acknowledgeHeatWarning:
        lid_.acknowledgeHeatWarning();
        break;
    case Kind::openAtLogin:
        loginItem_.setEnabled(true);
        break;
    case Kind::dontOpenAtLogin:
        loginItem_.setEnabled(false);
        break;
    case Kind::openLoginItemsSettings:
        shell_.openLoginItemsSettings();
        break;
    case Kind::quit:
        shell_.quit();
        break;
    }
}

void AwakePanel::opened() {
    loginItem_.refresh();
    controller_.checkExpiry();
    lid_.checkLease();
    lid_.refresh();
}

void AwakePanel::report(Trouble trouble, std::string sentence) {
    auto& shown = troubles_[trouble];
    if (shown == sentence)
        return;
    shown = std::move(sentence);
    changed_.emit();
}

std::vector<PanelButton> AwakePanel::sessionButtons() const {
    if (!offersPresets())
        return {{localizer_.text("Stay awake without a timer"), "", {Kind::stayAwakeWithoutTimer, 0}}};
    std::vector<PanelButton> buttons;
    for (const auto& preset : presets_.pinned())
        buttons.push_back({texts_.label(preset),
                           localizer_.text("Stay awake for") + " " + texts_.spokenLabel(preset),
                           {Kind::startSession, preset.seconds}});
    return buttons;
}

PanelSwitch AwakePanel::deepwake() const {
    PanelSwitch deepwake;
    deepwake.title = localizer_.text(Table::deepwake, "Deepwake");
    deepwake.footnote = localizer_.text(Table::deepwake, "Your Mac stays awake with the lid closed.");
    deepwake.isOn = lid_.isOn();
    deepwake.isEnabled = !lid_.refusal();
    deepwake.action = {lid_.isOn() ? Kind::deepwakeOff : Kind::deepwakeOn, 0};
    return deepwake;
}

std::vector<PanelNotice> AwakePanel::deepwakeNotices() const {
    std::vector<PanelNotice> notices;
    switch (lid_.precaution()) {
    case LidClosePrecaution::none:
        break;
    case LidClosePrecaution::beforeFirstUse:
        notices.push_back(
            {Symbol::heat,
             localizer_.text(Table::deepwake,
                             "With the lid shut and no display attached, heat can build up. Keep "
                             "your Mac out of bags and other enclosed spaces while it is working."),
             PanelButton{localizer_.text(Table::deepwake, "I understand"),
                         localizer_.text(Table::deepwake, "I understand the heat warning"),
                         {Kind::acknowledgeHeatWarning, 0}}});
        break;
    case LidClosePrecaution::noHeatPath:
        notices.push_back({Symbol::heat,
                           localizer_.text(Table::deepwake, "On battery with no display attached. Keep your "
                                                            "Mac uncovered so heat can escape."),
                           std::nullopt});
        break;
    }
    if (lid_.lastFailure())
        notices.push_back({Symbol::failure, failureText(*lid_.lastFailure(), localizer_), std::nullopt});
    return notices;
}

std::vector<PanelNotice> AwakePanel::notices() const {
    std::vector<PanelNotice> notices;
    const bool waitsForRetry = controller_.isRequested() && !controller_.isOn();
    if (controller_.lastFailure() || waitsForRetry) {
        PanelNotice failure{Symbol::failure, "", std::nullopt};
        if (controller_.lastFailure())
            failure.text = failureText(*controller_.lastFailure(), localizer_);
        if (waitsForRetry)
            failure.link =
                PanelButton{localizer_.text("Don't retry when Wakeloft opens"), "", {Kind::dontRetry, 0}};
        notices.push_back(std::move(failure));
    }
    if (controller_.limitation())
        notices.push_back({Symbol::information,
                           filled(localizer_.text("Sleep is held off in part only. {reason}"), "{reason}",
                                  failureText(*controller_.limitation(), localizer_)),
                           std::nullopt});
    for (const auto& [trouble, sentence] : troubles_)
        if (!sentence.empty())
            notices.push_back({Symbol::warning, sentence, std::nullopt});
    return notices;
}

PanelSwitch AwakePanel::openAtLogin() const {
    const bool isOn = loginItem_.isRegistered();
    return {.title = localizer_.text("Open at Login"),
            .footnote = "",
            .isOn = isOn,
            .action = {isOn ? Kind::dontOpenAtLogin : Kind::openAtLogin, 0}};
}

std::vector<PanelNotice> AwakePanel::loginNotices() const {
    std::vector<PanelNotice> notices;
    if (loginItem_.needsApproval())
        notices.push_back(
            {Symbol::information, localizer_.text("Approve Wakeloft in System Settings."),
             PanelButton{shell_.namesExtensions ? localizer_.text("Open Login Items & Extensions…")
                                                : localizer_.text("Open Login Items…"),
                         "",
                         {Kind::openLoginItemsSettings, 0}}});
    if (loginItem_.isRegistered() && !loginItem_.isAtStableLocation())
        notices.push_back({Symbol::information,
                           localizer_.text("Wakeloft isn't in Applications, so it may not open at your next "
                                           "login. Move it to Applications, then turn this back on."),
                           std::nullopt});
    if (loginItem_.lastFailure())
        notices.push_back(
            {Symbol::failure, failureText(*loginItem_.lastFailure(), localizer_), std::nullopt});
    return notices;
}

PanelButton AwakePanel::mainButton() const {
    return {
        controller_.isOn() ? localizer_.text("Turn Off") : localizer_.text("Turn On"), "", {Kind::toggle, 0}};
}

MenuBarIcon AwakePanel::icon() const {
    return MenuBarIcon::current(controller_.isOn(), controller_.activeUntil(), lid_.isOn());
}

bool AwakePanel::offersPresets() const {
    return AwakeSessionControls::shown(controller_.isOn(), controller_.activeUntil()) ==
           AwakeSessionControls::presets;
}

} // namespace wakeloft
