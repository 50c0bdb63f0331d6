#include "Benchmarks.h"
#include "BusCalls.h"
#include "Fail.h"
#include "JsonUserDefaults.h"
#include "LogindSleepBlocker.h"
#include "Program.h"
#include "SdEventMainRunLoop.h"
#include "SystemClocks.h"
#include "SystemDeadlineRecheckNotifier.h"
#include "TimerDeadlineScheduler.h"
#include "session/AwakeController.h"

#include <unistd.h>

namespace wakeloft {

namespace {

constexpr double mostRatio = 2.0;
constexpr Seconds sessionLength = 3600;

/// What the program has of a session behind its panel.
struct Session {
    Session(SdEventMainRunLoop& loop, sd_bus* sessionBus, const std::filesystem::path& settings)
        : systemBus(loop.event(), loop),
          defaults(settings, loop),
          blocker(sessionBus, systemBus, "Wakeloft", "Wakeloft is keeping this computer awake"),
          store(defaults),
          scheduler(loop.event(), dates),
          recheck(loop.event(), systemBus, [](const PlatformError& error) { fail(error.description); }),
          controller(blocker, store, dates, continuous, scheduler, recheck, true) {}

    BusConnection systemBus;
    JsonUserDefaults defaults;
    LogindSleepBlocker blocker;
    UserDefaultsAwakeIntentStore store;
    SystemDateProvider dates;
    SystemContinuousTimeProvider continuous;
    TimerDeadlineScheduler scheduler;
    SystemDeadlineRecheckNotifier recheck;
    AwakeController controller;
};

/// Lets the loop do all that it has to, as it would have before somebody clicks.
void settle(sd_event* event) {
    constexpr std::uint64_t quietMicroseconds = 2000;
    while (sd_event_run(event, quietMicroseconds) > 0) {
    }
}

/// The click, and the proof that the login manager knows of it.
double click(Session& session, bool withTimer, sd_bus* systemBus) {
    const auto start = Clock::now();
    if (withTimer)
        session.controller.turnOnFor(sessionLength);
    else
        session.controller.toggle();
    const double duration = microsecondsSince(start);
    if (!session.controller.isOn() || !blocks(systemBus, "idle", getpid()))
        fail("A click did not start a session.");
    return duration;
}

double plainCall(sd_bus* systemBus) {
    const auto start = Clock::now();
    const BusMessage held = inhibitIdle(systemBus);
    return microsecondsSince(start);
}

} // namespace

void measureClickToHold(Table& table) {
    constexpr int firstClicks = 100;
    constexpr int laterClicks = 400;
    const auto loop = need(SdEventMainRunLoop::create());
    const auto sessionBus = need(openSessionBus(loop->event()));
    const BusPointer systemBus = connectToSystemBus();
    const auto settings = makeFolder() / "settings.json";

    // Timed by hand, call by call: a benchmark library would run one after the other, and the machine changes
    // meanwhile. Both begin with everything at rest.
    Samples floor;
    const auto measureFloor = [&] {
        settle(loop->event());
        waitForNoInhibitor(systemBus.get());
        floor.add(plainCall(systemBus.get()));
    };
    const auto measureFigure = [&](Session& session, int round, Samples& figure) {
        settle(loop->event());
        waitForNoInhibitor(systemBus.get());
        figure.add(click(session, round % 4 < 2, systemBus.get()));
        session.controller.turnOff();
    };
    const auto measureBoth = [&](Session& session, int round, Samples& figure) {
        byTurns(round, [&] { measureFigure(session, round, figure); }, measureFloor);
    };

    Samples first;
    for (int round = 0; round < firstClicks; ++round) {
        Session session(*loop, sessionBus.get(), settings);
        measureBoth(session, round, first);
        settle(loop->event()); // the settings are written now
    }
    table.limitRatio("click to hold, first of a run", "us", first, floor, mostRatio);

    Session session(*loop, sessionBus.get(), settings);
    Samples later;
    measureFigure(session, 0, later); // the first click of this session
    later = {};
    floor = {};
    for (int round = 0; round < laterClicks; ++round)
        measureBoth(session, round, later);
    settle(loop->event());
    table.limitRatio("click to hold, each later one", "us", later, floor, mostRatio);
}

} // namespace wakeloft
