#include "MacApp.h"

#include "BundleInfo.h"
#include "QuitAlertView.h"
#include "QuitAppleEvent.h"

namespace wakeloft {

namespace {

/// Since then the system's settings name extensions beside the login items.
constexpr int firstSystemWithExtensions = 15;

std::optional<AboutInfo> aboutInfo() {
    return AboutInfo::fromInfoDictionary(bundleInfo());
}

SettingsMenu::Feedback feedback(const BundleLocalizer& localizer) {
    const auto info = aboutInfo();
    return {.appVersion = info ? std::optional(info->formattedVersion()) : std::nullopt,
            .macOSVersion = FeedbackLink::macOSVersion(systemVersion()),
            .language = localizer.language().identifier};
}

bool isSystemQuit() {
    const auto event = QuitAppleEvent::current();
    return event && event->isFromSystem();
}

} // namespace

MacApp::MacApp()
    : quitConfirmation_(
          {.ask = [this](const QuitConfirmation& confirmation) { return confirms(confirmation); },
           .isSystemQuit = isSystemQuit,
           .reply = [this](bool mayQuit) { application_.reply(mayQuit); },
           .after = [this](Seconds seconds,
                           std::function<void()> work) { loop_.performAfter(seconds, std::move(work)); }}),
      application_({.launched = [this] { launched(); },
                    .reopened = [this] { openPanel(); },
                    .shouldTerminate = [this] { return quitConfirmation_.applicationShouldTerminate(); }}),
      blocker_("Wakeloft is keeping this Mac awake"),
      store_(defaults_),
      scheduler_(dates_),
      controller_(blocker_, store_, dates_, continuous_, scheduler_, recheck_, true),
      deepwake_(controller_, defaults_, dates_, loop_),
      login_(loginItem_, true),
      presetStore_(defaults_),
      presets_(presetStore_),
      opener_(loop_),
      panel_({controller_, deepwake_.controller(), login_, presets_}, localizer_, formatter_,
             localizer_.language().locale,
             {.openPanel = [this] { openPanel(); },
              .quit = [this] { application_.terminate(); },
              .openLoginItemsSettings = [] { SMAppServiceLoginItem::openSystemSettings(); },
              .namesExtensions = systemVersion().major >= firstSystemWithExtensions}),
      settingsMenu_(localizer_, feedback(localizer_),
                    {.activate =
                         [this] {
                             if (item_ != nullptr)
                                 item_->activate();
                         },
                     .checkForUpdates = [this] { update_->checkForUpdates(); },
                     .openPage =
                         [this](const std::string& address) {
                             opener_.open(address, [this](const PlatformError& error) {
                                 settingsMenu_.report(error.description);
                             });
                         },
                     .terminate = [this] { application_.terminate(); }}),
      settingsPopup_(presets_, localizer_, formatter_, localizer_.language().locale),
      about_(localizer_, aboutInfo(), dates_, timeZone_) {
    quitConfirmation_.attach(controller_, deepwake_.controller());
    update_.emplace();
    update_->observeRelaunch(quitConfirmation_.relaunchNotice());
}

void MacApp::launched() {
    item_ = std::make_unique<MenuBarItem>(panel_, SettingsSource{settingsMenu_, settingsPopup_, about_});
}

void MacApp::openPanel() {
    if (item_ != nullptr)
        item_->openPanel();
}

bool MacApp::confirms(const QuitConfirmation& confirmation) {
    const auto alert =
        QuitConfirmationAlert(localizer_, formatter_, localizer_.language().locale).makeFor(confirmation);
    return !alert || askToQuit(*alert);
}

} // namespace wakeloft
