#include "LidHelper.h"

#include "HelperLog.h"
#include "LidLeaseBus.h"
#include "lease/LidHelperService.h"

#include <systemd/sd-daemon.h>

#include <chrono>
#include <cstdlib>
#include <thread>
#include <utility>

namespace wakeloft {

namespace {

constexpr const char* criticalBattery = "The battery is almost empty, so this computer may sleep.";

void logNotice(const std::string& line) {
    logLine(LogPriority::notice, line);
}

void logError(const PlatformError& error) {
    logLine(LogPriority::error, error.description);
}

} // namespace

LidHelper::LidHelper(SdEventMainRunLoop& loop)
    : loop_(loop),
      systemBus_(loop.event(), loop),
      clientBus_(loop.event(), loop),
      timer_(loop.event()),
      setting_(systemBus_, "Wakeloft", "Deepwake keeps this computer awake with the lid closed"),
      keeper_(setting_, dates_, uptime_),
      service_(keeper_, logNotice),
      helper_(
          service_, keeper_,
          {.dates = dates_,
           .uptime = uptime_,
           .timer = timer_,
           .log = logNotice,
           .settled = [this] { settled(); },
           .end = [this] { end(); },
           .pause =
               [](Seconds seconds) { std::this_thread::sleep_for(std::chrono::duration<double>(seconds)); }}),
      listener_(LidLeaseBus::polkitAction, helper_.requests(loop)),
      recheck_(loop.event(), systemBus_, logError) {}

// The name is taken first, for whom waits for it: no request is read before the loop runs.
std::expected<void, PlatformError> LidHelper::start() {
    const auto clientBus = clientBus_.bus();
    if (!clientBus)
        return std::unexpected(clientBus.error());
    clients_ = std::make_unique<LidLeaseBusService>(
        *clientBus, systemBus_, listener_,
        [this](const std::string& client, const LidLeaseBusService::Decided& decided) {
            authority_->check(client, decided);
        },
        logNotice);
    if (auto published = clients_->publish(); !published)
        return published;
    const auto bus = systemBus_.bus();
    if (!bus)
        return std::unexpected(bus.error());
    const auto lost = [this] {
        isBusLost_ = true;
        end();
    };
    busLost_ = systemBus_.lost().subscribe(lost);
    clientBusLost_ = clientBus_.lost().subscribe(lost);
    // The bus tells these from inside its own work; they are looked into, with calls, in a later turn.
    if (auto watched =
            setting_.watch([this] { loop_.perform(lifetime_.guard([this] { helper_.checkStanding(); })); });
        !watched)
        return watched;
    recheck_.observe([this] { loop_.perform(lifetime_.guard([this] { helper_.check(); })); });
    suspend_ = std::make_unique<ClosedLidSuspend>(*bus, [this] { return !setting_.isHeld(); }, logNotice);
    setting_.observeRelease([this] { suspend_->released(); });
    battery_ = std::make_unique<BatteryWarning>(*bus, [this](bool isCritical) {
        loop_.perform(lifetime_.guard([this, isCritical] { batteryChanged(isCritical); }));
    });
    authority_ = std::make_unique<PolkitAuthority>(*bus, LidLeaseBus::polkitAction);
    watchOver(false);
    sd_notify(0, "READY=1"); // a failure is the absence of a service manager
    return {};
}

int LidHelper::run() {
    while (!isOver_) {
        if (const int result = sd_event_run(loop_.event(), UINT64_MAX); result < 0) {
            logError(busFailure("The event loop failed", result));
            break;
        }
    }
    sd_notify(0, "STOPPING=1");
    const bool isFine = isOver_ && !isBusLost_;
    if (isBusLost_)
        logLine(LogPriority::error, "The system bus went away: the helper ends.");
    const bool isPutBack = helper_.stop();
    // The last release may have to ask for sleep, for which the bus's answers are awaited a moment.
    constexpr Seconds patience = 0.9;
    if (suspend_ != nullptr && !isBusLost_)
        suspend_->finish(loop_.event(), patience);
    if (const auto unmarked = crashMark_.set(false); !unmarked)
        logError(unmarked.error());
    return isFine && isPutBack ? EXIT_SUCCESS : EXIT_FAILURE;
}

void LidHelper::settled() {
    if (battery_ == nullptr)
        return; // not started yet
    const auto& terms = service_.terms();
    const bool isHeld = setting_.isHeld();
    const bool wantsSuspend = clients_->wantsSuspend(terms);
    if (!terms.empty())
        suspend_->setWanted(wantsSuspend);
    watchOver(isHeld);
    if (const auto marked = crashMark_.set(isHeld && wantsSuspend); !marked)
        logError(marked.error());
    battery_->setActive(!terms.empty() || battery_->isCritical(), logError);
    battery_->look();
}

// A hang matters only while the lock is held; at rest the service manager is told to expect no sign of life.
void LidHelper::watchOver(bool isHeld) {
    std::uint64_t limit = 0;
    if (sd_watchdog_enabled(0, &limit) <= 0 || (hasWatchdogState_ && isHeld == isWatchedOver_))
        return;
    hasWatchdogState_ = true;
    isWatchedOver_ = isHeld;
    const std::string notice = "WATCHDOG_USEC=" + std::to_string(isHeld ? limit : 0);
    int result = sd_notify(0, notice.c_str());
    if (result >= 0)
        result = sd_event_set_watchdog(loop_.event(), isHeld ? 1 : 0);
    if (result < 0)
        logError(busFailure("The watchdog cannot be served", result));
}

int LidHelper::afterCrash(SdEventMainRunLoop& loop) {
    if (!CrashMark().take())
        return EXIT_SUCCESS;
    BusConnection systemBus(loop.event(), loop);
    const auto bus = systemBus.bus();
    if (!bus) {
        logError(bus.error());
        return EXIT_FAILURE;
    }
    logNotice("the helper ended without letting go");
    ClosedLidSuspend suspend(*bus, [] { return true; }, logNotice);
    suspend.setWanted(true);
    suspend.released();
    constexpr Seconds patience = 3;
    suspend.finish(loop.event(), patience);
    return EXIT_SUCCESS;
}

void LidHelper::batteryChanged(bool isCritical) {
    if (isCritical) {
        logNotice("the battery is almost empty: the computer may sleep");
        setting_.forbid(criticalBattery);
        helper_.holdBack(criticalBattery);
        helper_.checkStanding();
    } else {
        logNotice("the battery is no longer almost empty");
        setting_.permit();
        helper_.holdBack(std::nullopt);
        helper_.check();
    }
}

} // namespace wakeloft
