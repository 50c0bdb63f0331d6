#include "MacAppDoubles.h"

#include "AppleDoubles.h"
#include "BundleInfo.h"
#include "BundleLocalizer.h"
#include "CFMainRunLoop.h"
#include "FoundationDurationFormatter.h"
#include "FoundationUserDefaults.h"
#include "MenuBarItem.h"
#include "QuitAlertView.h"
#include "SMAppServiceLidHelperRegistration.h"
#include "SMAppServiceLoginItem.h"
#include "SparkleSoftwareUpdate.h"
#include "SystemClocks.h"
#include "SystemDeadlineRecheckNotifier.h"
#include "SystemMachineConditionsNotifier.h"
#include "SystemTimeZone.h"
#include "TimerDeadlineScheduler.h"
#include "WorkspaceLinkOpener.h"
#include "XPCLidLeaseConnection.h"

#include <utility>

namespace wakeloft {

MacAppDoubles mac;

namespace {
void record(const std::string& call) {
    apple.calls.push_back(call);
}
} // namespace

// The system's end.
struct ApplicationDelegate::Application {};
ApplicationDelegate::ApplicationDelegate(Events events) {
    record("application delegate");
    mac.events = std::move(events);
}
ApplicationDelegate::~ApplicationDelegate() = default;
void ApplicationDelegate::run() {}
void ApplicationDelegate::terminate() {
    record("terminate");
}
void ApplicationDelegate::reply(bool) {}
std::optional<QuitAppleEvent> QuitAppleEvent::current() {
    return mac.event;
}
void CFMainRunLoop::perform(std::function<void()>) {}
void CFMainRunLoop::performAfter(Seconds, std::function<void()>) {}

// What the bundle says.
BundleLocalizer::BundleLocalizer() : language_(AppLanguage::preferring({"de"}, {"de_CH"})) {}
std::string BundleLocalizer::text(Table, const char* key) const {
    return key;
}
bool BundleLocalizer::isRightToLeft() const {
    return false;
}
std::optional<InfoDictionary> bundleInfo() {
    return std::nullopt;
}
OperatingSystemVersion systemVersion() {
    return {15, 0, 0};
}

// What the controllers stand on.
std::optional<DefaultsValue> FoundationUserDefaults::value(const std::string& key) const {
    record("read " + key);
    const auto found = mac.defaults.find(key);
    return found == mac.defaults.end() ? std::nullopt : std::optional(found->second);
}
void FoundationUserDefaults::set(const std::string&, DefaultsValue) {}
void FoundationUserDefaults::remove(const std::string&) {}
std::string FoundationDurationFormatter::units(HoursAndMinutes, Width, const Locale& locale) const {
    return "a while in " + locale.identifier;
}
std::string FoundationDurationFormatter::time(std::int64_t, TimePattern, const Locale&) const {
    return "0:01";
}
Date SystemDateProvider::now() const {
    return Date{1'000'000};
}
Seconds SystemContinuousTimeProvider::continuousTime() const {
    return 0;
}
Seconds SystemTimeZone::secondsFromUtcAt(Date) const {
    return 0;
}
struct TimerDeadlineScheduler::Timer {};
TimerDeadlineScheduler::TimerDeadlineScheduler(const DateProvider& dates) : dates_(dates) {}
TimerDeadlineScheduler::~TimerDeadlineScheduler() = default;
void TimerDeadlineScheduler::scheduleAt(Date, std::function<void()>) {
    static_cast<void>(dates_);
}
void TimerDeadlineScheduler::cancel() {}
struct SystemDeadlineRecheckNotifier::Observation {};
SystemDeadlineRecheckNotifier::SystemDeadlineRecheckNotifier() {
    record("rechecks");
}
SystemDeadlineRecheckNotifier::~SystemDeadlineRecheckNotifier() = default;
void SystemDeadlineRecheckNotifier::observe(std::function<void()>) {}
struct SystemMachineConditionsNotifier::Observation {};
SystemMachineConditionsNotifier::SystemMachineConditionsNotifier() {
    record("conditions");
}
SystemMachineConditionsNotifier::~SystemMachineConditionsNotifier() = default;
void SystemMachineConditionsNotifier::observe(std::function<void()>) {}
struct SMAppServiceLidHelperRegistration::Service {};
SMAppServiceLidHelperRegistration::SMAppServiceLidHelperRegistration(const std::string& plistName) {
    record("helper " + plistName);
}
SMAppServiceLidHelperRegistration::~SMAppServiceLidHelperRegistration() = default;
LidHelperStatus SMAppServiceLidHelperRegistration::status() const {
    return LidHelperStatus::enabled;
}
std::expected<void, Error> SMAppServiceLidHelperRegistration::registerHelper() {
    return {};
}
LidLeaseConnectionFactory xpcLidLeaseConnections() {
    return [](const std::string& requirement) {
        record("connect to " + requirement);
        return nullptr;
    };
}
struct SMAppServiceLoginItem::Implementation {};
SMAppServiceLoginItem::SMAppServiceLoginItem() = default;
SMAppServiceLoginItem::~SMAppServiceLoginItem() = default;
LoginItemState SMAppServiceLoginItem::state() const {
    record("login item");
    return LoginItemState::enabled;
}
bool SMAppServiceLoginItem::isAtStableLocation() const {
    return true;
}
std::expected<void, Error> SMAppServiceLoginItem::registerItem() {
    record("register login item");
    return {};
}
std::expected<void, Error> SMAppServiceLoginItem::unregisterItem() {
    return {};
}
void SMAppServiceLoginItem::openSystemSettings() {}
struct SparkleSoftwareUpdate::Updater {};
SparkleSoftwareUpdate::SparkleSoftwareUpdate() {
    record("updater");
}
SparkleSoftwareUpdate::~SparkleSoftwareUpdate() = default;
void SparkleSoftwareUpdate::checkForUpdates() {}
void SparkleSoftwareUpdate::observeRelaunch(std::function<void()> relaunching) {
    mac.relaunching = std::move(relaunching);
}
void WorkspaceLinkOpener::open(const std::string&, Failed) { // NOLINT(performance-*): as declared
    static_cast<void>(loop_);
}

// The views.
struct MenuBarItem::Views {};
MenuBarItem::MenuBarItem(AwakePanel& panel, const SettingsSource& settings) {
    record("menu bar item");
    mac.panel = &panel;
    mac.settings = &settings.menu;
}
MenuBarItem::~MenuBarItem() = default;
void MenuBarItem::openPanel() {
    record("open panel");
}
void MenuBarItem::activate() {}
bool askToQuit(const QuitAlertContent& content) {
    record("ask " + content.title + " " + content.message.substr(0, content.message.find('.') + 1));
    return mac.confirms;
}

} // namespace wakeloft
