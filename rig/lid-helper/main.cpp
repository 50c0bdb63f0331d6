#include "BootTimer.h"
#include "BusConnection.h"
#include "FileSleepSetting.h"
#include "HelperLog.h"
#include "LeaseFileArgument.h"
#include "LidLeaseBusService.h"
#include "SdEventMainRunLoop.h"
#include "SystemClocks.h"
#include "SystemDeadlineRecheckNotifier.h"
#include "TerminationSignals.h"
#include "lease/LidHelperLoop.h"

#include <chrono>
#include <cstdlib>
#include <iostream>
#include <thread>

using namespace wakeloft;

namespace {

int fail(const std::string& sentence) {
    std::cerr << "wakeloft-rig-lid-helper: " << sentence << '\n';
    return EXIT_FAILURE;
}

void logNotice(const std::string& line) {
    logLine(LogPriority::notice, line);
}

int serve(const std::string& path) {
    const auto loop = SdEventMainRunLoop::create();
    if (!loop)
        return fail(loop.error().description);
    sd_event* event = (*loop)->event();
    bool isOver = false;
    const auto signals = TerminationSignals::watch(event, [&] { isOver = true; });
    BusConnection systemBus(event, **loop);
    BusConnection clientBus(event, **loop);
    const auto clients = clientBus.bus();
    if (!signals || !clients)
        return fail((signals ? clients.error() : signals.error()).description);
    const Subscription lost = clientBus.lost().subscribe([&] { isOver = true; });

    const auto failed = [](const PlatformError& error) { logLine(LogPriority::error, error.description); };
    const SystemDateProvider dates;
    const SystemUptimeProvider uptime;
    BootTimer timer(event);
    rig::FileSleepSetting setting(path);
    LidSleepLeaseKeeper keeper(setting, dates, uptime);
    LidLeaseService service(keeper, logNotice);
    const auto record = [&] {
        if (const auto recorded = setting.record(keeper.leaseExpiry()); !recorded)
            failed(recorded.error());
    };
    LidHelperLoop helper(
        service, keeper,
        {.dates = dates,
         .uptime = uptime,
         .timer = timer,
         .log = logNotice,
         .settled = record,
         .end = [&] { isOver = true; },
         .pause =
             [](Seconds seconds) { std::this_thread::sleep_for(std::chrono::duration<double>(seconds)); }});
    LidLeaseListener listener("nobody is checked", helper.requests(**loop));
    SystemDeadlineRecheckNotifier recheck(event, systemBus, failed);
    recheck.observe([&] { helper.check(); });
    LidLeaseBusService server(
        *clients, systemBus, listener,
        [](const std::string&, const LidLeaseBusService::Decided& decided) { decided(std::nullopt); },
        logNotice);
    if (const auto published = server.publish(); !published)
        return fail(published.error().description);
    while (!isOver)
        if (sd_event_run(event, UINT64_MAX) < 0)
            return fail("The event loop failed.");
    return helper.stop() ? EXIT_SUCCESS : EXIT_FAILURE;
}

} // namespace

/// The lid helper with a lease file in place of the login manager's lock; it lets everybody in.
int main(int count, char** arguments) {
    const auto file = rig::leaseFileArgument(count, arguments);
    if (!file)
        return fail(file.error());
    if (std::getenv("DBUS_SYSTEM_BUS_ADDRESS") == nullptr)
        return fail("DBUS_SYSTEM_BUS_ADDRESS is not set; this stand-in runs on a private bus only.");
    return serve(*file);
}
