#include "LinuxApp.h"

#include "Theme.h"
#include "TrayGlyph.h"
#include "WindowIcon.h"
#include "status/TrayIcon.h"

#include <QApplication>
#include <QTimer>

#include <algorithm>
#include <cstdio>
#include <utility>

namespace wakeloft {

namespace {

constexpr const char* applicationId = "wakeloft";
constexpr std::int32_t firstSeparatorId = 1'000'000;
constexpr Seconds patienceForTrayHost = 5; // at login the tray often comes after the programs

/// Runs on Qt's loop, outside any handler of the buses, so that it may open windows.
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

} // namespace

LinuxApp::LinuxApp(SdEventMainRunLoop& loop, sd_bus* sessionBus, const std::string& sessionBusTrouble)
    : loop_(loop),
      systemBus_(loop.event(), loop),
      localizer_(catalogueFolder()),
      defaults_(makeDefaults(loop, settings_, settingsPathTrouble_)),
      blocker_(sessionBus, systemBus_, "Wakeloft", localizer_.text("Wakeloft is keeping this Mac awake")),
      store_(*defaults_),
      scheduler_(loop.event(), dates_),
      recheck_(loop.event(), systemBus_,
               [this](const PlatformError& error) {
                   systemEventsTrouble_ = error.description;
                   log(error.description);
                   if (isBuilt_)
                       panel_.report(AwakePanel::Trouble::systemEvents, error.description);
               }),
      controller_(blocker_, store_, dates_, continuous_, scheduler_, recheck_, true),
      panel_(controller_, localizer_, formatter_, localizer_.locale(),
             {[this] { activate({}); }, [] { QCoreApplication::quit(); }}),
      view_({[this] { return panel_.content(); },
             [this](const PanelAction& action) { panel_.perform(action); }, [this] { panel_.opened(); }}) {
    panelChanged_ = panel_.changed().subscribe([this] { refresh(); });
    isBuilt_ = true;
    panel_.report(AwakePanel::Trouble::systemEvents, systemEventsTrouble_);
    systemBusReopened_ =
        systemBus_.reopened().subscribe([this] { panel_.report(AwakePanel::Trouble::systemEvents, ""); });
    tellSettingsTrouble();
    applyTheme(false);
    QApplication::setWindowIcon(windowIcon());
    if (settings_ != nullptr)
        settingsTroubleChanged_ = settings_->troubleChanged().subscribe([this] { tellSettingsTrouble(); });
    if (sessionBus == nullptr) {
        panel_.report(AwakePanel::Trouble::sessionBus, sessionBusTrouble);
        noTrayHost();
    } else {
        followColorScheme(sessionBus);
        makeTrayItem(sessionBus);
    }
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
    else if (action == "open")
        panel_.perform({Kind::openPanel, 0});
    else if (action == "quit")
        panel_.perform({Kind::quit, 0});
    else
        return false;
    return true;
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

void LinuxApp::followColorScheme(sd_bus* sessionBus) {
    auto scheme = ColorScheme::follow(sessionBus, [](bool isDark) { applyTheme(isDark); });
    if (scheme)
        colorScheme_ = std::move(*scheme);
    else
        log(scheme.error().description); // light colours then
}

void LinuxApp::makeTrayItem(sd_bus* sessionBus) {
    trayContent_ = panel_.trayContent();
    const auto failed = [this](const PlatformError& error) {
        log(error.description);
        panel_.report(AwakePanel::Trouble::tray, error.description);
    };
    StatusNotifierItem::Events events;
    events.activated = [this](int x, int y, const std::string& token) { trayActivated(x, y, token); };
    events.menuChosen = [this](std::int32_t id) { menuChosen(id); };
    events.hostChanged = [this](bool isHosted) { trayHostChanged(isHosted); };
    events.failed = failed;
    auto item = StatusNotifierItem::create(sessionBus, loop_, applicationId, trayFace(trayContent_),
                                           std::move(events));
    if (item) {
        trayItem_ = std::move(*item);
        return;
    }
    failed(item.error());
    noTrayHost();
}

void LinuxApp::trayHostChanged(bool isHosted) {
    const auto change = ++trayHostChanges_;
    if (isHosted) {
        panel_.report(AwakePanel::Trouble::trayHost, "");
        panel_.report(AwakePanel::Trouble::tray, "");
        return;
    }
    loop_.performAfter(patienceForTrayHost, lifetime_.guard([this, change] {
        if (change == trayHostChanges_)
            noTrayHost();
    }));
}

void LinuxApp::noTrayHost() {
    const auto sentence =
        localizer_.text("This desktop shows no tray, so Wakeloft opens as a window. Start it again "
                        "to see it again.");
    log(sentence);
    panel_.report(AwakePanel::Trouble::trayHost, sentence);
    activate({});
}

void LinuxApp::trayActivated(int x, int y, const std::string& activationToken) {
    later(&view_, [this, x, y, activationToken] {
        if (!activationToken.empty())
            qputenv("XDG_ACTIVATION_TOKEN", QByteArray::fromStdString(activationToken));
        view_.openAt(QPoint(x, y));
    });
}

void LinuxApp::menuChosen(std::int32_t id) {
    const auto index = static_cast<std::size_t>(id - 1);
    if (index < menuActions_.size())
        panel_.perform(menuActions_[index]);
}

void LinuxApp::refresh() {
    view_.refresh();
    auto content = panel_.trayContent();
    if (trayItem_ == nullptr || content == trayContent_)
        return;
    trayContent_ = std::move(content);
    trayItem_->show(trayFace(trayContent_));
}

TrayItemFace LinuxApp::trayFace(const TrayContent& content) {
    TrayItemFace face;
    const auto direction =
        content.isRightToLeft ? LayoutDirection::rightToLeft : LayoutDirection::leftToRight;
    face.iconThemePath = trayIconFolder();
    face.iconName = face.iconThemePath.empty() ? "" : trayIconName(content.icon, direction);
    face.pixmaps = trayPixmaps(content.icon, direction);
    face.title = content.spokenLabel;
    face.toolTipTitle = content.toolTipTitle;
    face.toolTipText = content.toolTipText;
    face.isRightToLeft = content.isRightToLeft;
    std::int32_t separators = 0;
    for (const auto& entry : content.menu) {
        const bool isSeparator = entry.title.empty();
        face.menu.push_back({.id = isSeparator ? firstSeparatorId + separators++ : idOf(entry.action),
                             .label = entry.title,
                             .isSeparator = isSeparator,
                             .isEnabled = true});
    }
    return face;
}

// The same for the life of the program: a host's click may come after the menu that it saw has changed.
std::int32_t LinuxApp::idOf(const PanelAction& action) {
    auto found = std::ranges::find(menuActions_, action);
    if (found == menuActions_.end())
        found = menuActions_.insert(found, action);
    return static_cast<std::int32_t>(found - menuActions_.begin()) + 1;
}

} // namespace wakeloft
