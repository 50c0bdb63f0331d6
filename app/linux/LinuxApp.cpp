#include "LinuxApp.h"

#include "BuildInfo.h"
#include "QuitAlertView.h"
#include "Theme.h"
#include "WindowIcon.h"
#include "preferences/FeedbackLink.h"

#include <QApplication>
#include <QTimer>

#include <cstdio>
#include <utility>

namespace wakeloft {

namespace {

/// Runs on Qt's loop, outside any handler of the buses, so that it may open windows and wait for an answer.
void later(QObject* context, std::function<void()> work) {
    QTimer::singleShot(0, context, std::move(work));
}

std::unique_ptr<UserDefaults> makeDefaults(MainRunLoop& loop, JsonUserDefaults*& settings,
                                           std::string& trouble) {
    auto path = settingsPath();
    if (!path) {
        trouble = path.error().description;
        return std::make_unique<InMemoryUserDefaults>();
    }
    auto file = std::make_unique<JsonUserDefaults>(std::move(*path), loop);
    settings = file.get();
    return file;
}

void log(const std::string& sentence) {
    std::fprintf(stderr, "Wakeloft: %s\n", sentence.c_str());
}

void logTrouble(const PlatformError& error) {
    log(error.description);
}

std::optional<AboutInfo> aboutInfo() {
    return AboutInfo::fromInfoDictionary(buildInfoDictionary());
}

SettingsMenu::Feedback feedback(const GettextLocalizer& localizer) {
    const auto info = aboutInfo();
    return {.appVersion = info ? std::optional(info->formattedVersion()) : std::nullopt,
            .macOSVersion = std::nullopt,
            .language = localizer.language().identifier};
}

} // namespace

LinuxApp::LinuxApp(const Surroundings& surroundings)
    : loop_(surroundings.loop),
      quitConfirmation_(
          {.ask =
               [this](const QuitConfirmation& confirmation) {
                   const auto alert = QuitConfirmationAlert(localizer_, formatter_, localizer_.locale())
                                          .makeFor(confirmation);
                   return !alert || askToQuit(*alert);
               },
           .isSystemQuit = [this] { return isSystemQuit_; },
           .reply =
               [](bool mayQuit) {
                   if (mayQuit)
                       QCoreApplication::quit();
               },
           .after = [this](Seconds seconds,
                           std::function<void()> work) { loop_.performAfter(seconds, std::move(work)); }}),
      systemBus_(loop_.event(), loop_),
      localizer_(catalogueFolder()),
      defaults_(makeDefaults(loop_, settings_, settingsPathTrouble_)),
      blocker_(surroundings.sessionBus, systemBus_, "Wakeloft",
               localizer_.text("Wakeloft is keeping this Mac awake"),
               localizer_.text("Nothing on this computer lets Wakeloft hold off sleep.")),
      store_(*defaults_),
      scheduler_(loop_.event(), dates_),
      recheck_(loop_.event(), systemBus_,
               [this](const PlatformError& error) {
                   systemEventsTrouble_ = error.description;
                   log(error.description);
                   if (isBuilt_)
                       panel_.report(AwakePanel::Trouble::systemEvents, error.description);
               }),
      controller_(blocker_, store_, dates_, continuous_, scheduler_, recheck_, true),
      deepwake_(controller_, *defaults_, dates_, loop_.event(), loop_, systemBus_, surroundings.sessionBus,
                logTrouble),
      loginItem_(XdgAutostartLoginItem::placesFor(DesktopApplication::identifier)),
      login_(loginItem_, true),
      presetStore_(*defaults_),
      presets_(presetStore_),
      opener_(loop_.event(), surroundings.sessionBus, surroundings.environment),
      update_(opener_, DesktopApplication::identifier,
              [this](const PlatformError& error) {
                  log(error.description);
                  settingsMenu_.report(localizer_.text("No software centre came up. Update Wakeloft in the "
                                                       "way that you installed it."));
              }),
      panel_({controller_, deepwake_.controller(), login_, presets_}, localizer_, formatter_,
             localizer_.locale(),
             {.openPanel = [this] { activate({}); }, .quit = [this] { quit(QuitRequest::user); }}),
      settingsMenu_(localizer_, feedback(localizer_),
                    {.activate = [this] { view_.activateWindow(); },
                     .checkForUpdates = [this] { update_.checkForUpdates(); },
                     .openPage =
                         [this](const std::string& address) {
                             opener_.open(address, [this](const PlatformError& error) {
                                 log(error.description);
                                 settingsMenu_.report(filled(
                                     localizer_.text("The feedback page couldn't be opened: {address}"),
                                     "{address}", isolatedLeftToRight(FeedbackLink::form())));
                             });
                         },
                     .terminate = [this] { quit(QuitRequest::user); }}),
      settingsPopup_(presets_, localizer_, formatter_, localizer_.locale()),
      about_(localizer_, aboutInfo(), dates_, timeZone_),
      view_({.content = [this] { return panel_.content(); },
             .untilStatusLineTicks = [this] { return panel_.untilStatusLineTicks(); },
             .perform = [this](const PanelAction& action) { panel_.perform(action); },
             .opened = [this] { panel_.opened(); },
             .settings = {settingsMenu_, settingsPopup_, about_}}) {
    quitConfirmation_.attach(controller_, deepwake_.controller());
    panelChanged_ = panel_.changed().subscribe([this] { refresh(); });
    isBuilt_ = true;
    panel_.report(AwakePanel::Trouble::systemEvents, systemEventsTrouble_);
    systemBusReopened_ =
        systemBus_.reopened().subscribe([this] { panel_.report(AwakePanel::Trouble::systemEvents, ""); });
    tellSettingsTrouble();
    applyTheme({});
    QApplication::setLayoutDirection(localizer_.isRightToLeft() ? Qt::RightToLeft : Qt::LeftToRight);
    QApplication::setWindowIcon(windowIcon());
    if (settings_ != nullptr)
        settingsTroubleChanged_ = settings_->troubleChanged().subscribe([this] { tellSettingsTrouble(); });
    if (surroundings.sessionBus == nullptr) {
        panel_.report(AwakePanel::Trouble::sessionBus, surroundings.sessionBusTrouble);
        noTrayHost();
        return;
    }
    followAppearance(surroundings.sessionBus);
    tray_ = std::make_unique<Tray>(
        surroundings.sessionBus, loop_, panel_,
        Tray::Events{.pressed = [this](int x, int y, const std::string& token) { trayPressed(x, y, token); },
                     .isMissing = [this] { noTrayHost(); }});
}

LinuxApp::~LinuxApp() = default;

void LinuxApp::activate(const std::string& activationToken) {
    later(&view_, [this, activationToken] {
        if (!activationToken.empty())
            qputenv("XDG_ACTIVATION_TOKEN", QByteArray::fromStdString(activationToken));
        view_.openAsWindow();
    });
}

bool LinuxApp::perform(const std::string& action, const DesktopApplication::Argument& argument) {
    using Kind = PanelAction::Kind;
    if (action == "start-session") {
        const auto* seconds = std::get_if<double>(&argument);
        if (seconds == nullptr || !(*seconds > 0) || !AwakeIntent::deadlineAfter(*seconds, dates_.now()))
            return false;
        panel_.perform({Kind::startSession, *seconds});
        return true;
    }
    if (!std::holds_alternative<std::monostate>(argument))
        return false;
    if (action == "turn-on")
        panel_.perform({Kind::stayAwakeWithoutTimer, 0});
    else if (action == "turn-off")
        panel_.perform({Kind::turnOff, 0});
    else if (action == "deepwake-on")
        panel_.perform({Kind::deepwakeOn, 0});
    else if (action == "deepwake-off")
        panel_.perform({Kind::deepwakeOff, 0});
    else if (action == "open")
        panel_.perform({Kind::openPanel, 0});
    else if (action == "quit")
        panel_.perform({Kind::quit, 0});
    else
        return false;
    return true;
}

void LinuxApp::quit(QuitRequest request) {
    later(&view_, [this, request] { decideOnQuitting(request); });
}

void LinuxApp::decideOnQuitting(QuitRequest request) {
    // The question lets further requests in, each with an origin of its own.
    isSystemQuit_ = request == QuitRequest::system;
    if (quitConfirmation_.applicationShouldTerminate() == TerminateReply::now)
        QCoreApplication::quit();
}

void LinuxApp::tellSettingsTrouble() {
    std::string readTrouble;
    std::string writeTrouble = settingsPathTrouble_;
    if (settings_ != nullptr) {
        readTrouble = settings_->readTrouble() ? settings_->readTrouble()->description : "";
        writeTrouble = settings_->writeTrouble() ? settings_->writeTrouble()->description : "";
    }
    if (std::exchange(loggedReadTrouble_, readTrouble) != readTrouble && !readTrouble.empty())
        log(readTrouble);
    if (!writeTrouble.empty())
        log(writeTrouble);
    panel_.report(AwakePanel::Trouble::settingsRead, readTrouble);
    panel_.report(AwakePanel::Trouble::settingsWrite, writeTrouble);
}

void LinuxApp::followAppearance(sd_bus* sessionBus) {
    auto followed = DesktopAppearance::follow(sessionBus, applyTheme);
    if (followed)
        appearance_ = std::move(*followed);
    else
        log(followed.error().description); // as without a portal then
}

void LinuxApp::noTrayHost() {
    const auto sentence =
        localizer_.text("This desktop shows no tray, so Wakeloft opens as a window. Start it again "
                        "to see it again.");
    log(sentence);
    panel_.report(AwakePanel::Trouble::trayHost, sentence);
    activate({});
}

void LinuxApp::trayPressed(int x, int y, const std::string& activationToken) {
    later(&view_, [this, x, y, activationToken] {
        if (!activationToken.empty())
            qputenv("XDG_ACTIVATION_TOKEN", QByteArray::fromStdString(activationToken));
        view_.openAt(QPoint(x, y));
    });
}

void LinuxApp::refresh() {
    view_.refresh();
    if (tray_ != nullptr)
        tray_->refresh();
}

} // namespace wakeloft
