#include "simulation/World.h"

#include "lease/LidHelperService.h"

#include <algorithm>

namespace wakeloft {

namespace {
constexpr int stepsOfARun = 120;
const Error refused = SleepBlockerError::assertionFailed(-1);
} // namespace

World::World(std::uint64_t seed) : chance_(seed) {
    registration_.onceRegistered = LidHelperStatus::requiresApproval;
    startHelper();
    app();
}

std::optional<std::string> World::run() {
    for (int count = 0; count < stepsOfARun && !fault_; ++count) {
        step();
        judge();
    }
    if (!fault_)
        calmDown();
    if (!fault_)
        return std::nullopt;
    std::string story = *fault_ + "\n";
    for (const auto& each : steps_)
        story += "  " + each + "\n";
    return story;
}

void World::step() {
    std::uint64_t all = 0;
    for (const auto& each : events_)
        all += each.weight;
    auto left = chance_.below(all);
    auto event = events_.begin();
    for (; left >= event->weight; ++event)
        left -= event->weight;
    const Seconds amount = chance_.between(event->least, event->most);
    steps_.push_back(event->name + (event->least < event->most ? " " + std::to_string(amount) : ""));
    event->happen(amount);
}

std::vector<World::Event> World::events() {
    const auto open = [this](Seconds) {
        app().awake.checkExpiry();
        app().lid.checkLease();
        app().lid.refresh();
    };
    const auto wait = [this](Seconds) {
        waitsSince_ = waitsSince_.value_or(uptime());
        app().lid.whenSettled([this] { waitsSince_.reset(); });
    };
    const auto stop = [this](Seconds) {
        if (helper_ != nullptr)
            helper_->loop.stop();
        endHelper();
    };
    const auto replace = [this](Seconds) {
        if (helper_ != nullptr)
            helper_->loop.programFound(LidHelperFileWatch::Finding::replaced("next"));
    };
    // None in half of the cases.
    const auto percent = [](unsigned& rate) {
        return [&rate](Seconds amount) { rate = static_cast<unsigned>(std::max(0.0, amount)); };
    };
    const auto setElsewhere = [this](Seconds amount) {
        const bool mayBeTaken = helper_ == nullptr || helper_->keeper.isSleepDisabled() ||
                                helper_->keeper.lastError().has_value();
        setting_.writeAsForeigner(amount > 0, mayBeTaken);
    };
    const auto approve = [this](Seconds status) {
        registration_.current = static_cast<LidHelperStatus>(status);
    };
    const auto refuse = [this](Seconds amount) {
        app().assertion.refusal = amount > 0 ? std::optional(refused) : std::nullopt;
    };
    const auto takeAway = [this](Seconds) {
        if (std::exchange(app().assertion.engaged, false))
            app().assertion.holdChanged(std::unexpected(refused));
    };
    return {
        {10, "the app is started", [this](Seconds) { app(); }},
        {10, "session toggled", [this](Seconds) { app().awake.toggle(); }},
        {10, "session for", [this](Seconds length) { app().awake.turnOnFor(length); }, -1, 120},
        {40, "Deepwake on for", [this](Seconds length) { app().lid.turnOnFor(length); }, 1, 200},
        {5, "Deepwake on", [this](Seconds) { app().lid.turnOnJoiningSessionOr(std::nullopt); }},
        {5, "Deepwake on, perhaps for 7200", [this](Seconds) { app().lid.turnOnJoiningSessionOr(7200); }},
        {10, "Deepwake off", [this](Seconds) { app().lid.turnOff(); }},
        {10, "the panel is opened", open},
        {20, "the heat warning is acknowledged", [this](Seconds) { app().lid.acknowledgeHeatWarning(); }},
        {10, "somebody waits for the app to be settled", wait},
        {20, "asleep for", [this](Seconds asleep) { jump(asleep, 0); }, 0.1, 100},
        {20, "the clock is set by", [this](Seconds by) { jump(0, by); }, -4000, 4000},
        {50, "awake for", [this](Seconds seconds) { pass(seconds); }, 0, 3},
        {50, "awake for", [this](Seconds seconds) { pass(seconds); }, 0, 60},
        {10, "the app dies", [this](Seconds) { app_.reset(); }},
        {10, "the helper dies", [this](Seconds) { endHelper(); }},
        {10, "the helper is asked to end", stop},
        {10, "the helper's program is replaced", replace},
        {10, "writes fail, in percent:", percent(setting_.failingWrites), -100, 100},
        {5, "reads fail, in percent:", percent(setting_.failingReads), -100, 100},
        {5, "what fails hangs, in percent:", percent(setting_.hangs), -100, 100},
        {10, "lost, in percent:", percent(transport_.lost), -50, 50},
        {10, "late, in percent:", percent(transport_.late), -50, 50},
        {10, "doubled, in percent:", percent(transport_.doubled), -100, 100},
        {10, "somebody else sets 1 where above nothing:", setElsewhere, -1, 1},
        {10, "registration", approve, 0, 3.999},
        {5, "assertions are refused where above nothing:", refuse, -1, 1},
        {5, "the assertion is taken away", takeAway},
    };
}

/// Everything works again: then everything must settle.
void World::calmDown() {
    steps_.emplace_back("everything works again");
    setting_.failingWrites = setting_.failingReads = transport_.lost = transport_.late = transport_.doubled =
        0;
    registration_.current = LidHelperStatus::enabled;
    pass(30); // the system starts the helper again
    if (app_ != nullptr) {
        // The first try may meet a helper that is about to end, the second the connection to it.
        for (int tries = 0; tries < 4; ++tries) {
            app_->lid.turnOff();
            pass(10);
        }
        if (!app_->lid.isSettled())
            fail("requests to the helper are never answered");
        if (app_->lid.lastFailure())
            fail("a reset that works is not confirmed");
        useInPeace();
    }
    app_.reset();
    pass(LidSleepLease::duration + LidSleepLease::retrySpacing + 1);
    if (setting_.isDisabled && !setting_.isForeign())
        fail("the setting stays on after all has ended");
}

/// Deepwake holds for as long as was asked for, and no longer.
void World::useInPeace() {
    setting_.writeAsForeigner(false, true);
    app_->assertion.refusal.reset();
    app_->lid.acknowledgeHeatWarning();
    constexpr int asked = 95; // ends between two renewals
    // A holder is told once that its setting was turned off.
    for (int tries = 0; tries < 3 && !app_->lid.isOn(); ++tries) {
        app_->lid.turnOnFor(asked);
        pass(1);
    }
    for (int second = 2; second < asked; ++second) {
        if (!app_->lid.isOn() || !setting_.isDisabled)
            fail("Deepwake does not hold");
        pass(1);
    }
    pass(2);
    if (app_->lid.isOn() || app_->awake.isOn() || setting_.isDisabled)
        fail("Deepwake holds for longer than asked");
}

/// Who needs the app starts it where it does not run.
SimulatedApp& World::app() {
    if (app_ == nullptr) {
        steps_.emplace_back("(for that the app is started)");
        transport_.beginAnew();
        waitsSince_.reset();
        noSessionSince_.reset();
        app_ = std::make_unique<SimulatedApp>(time_, transport_, intents_, lidStore_, registration_);
    }
    return *app_;
}

void World::startHelper() {
    setting_.isHelperStarting = true;
    helper_ = std::make_shared<AssembledHelper>(setting_, time_.clocks, helperTimer_, time_);
}

/// The system starts it again a moment later.
void World::endHelper() {
    if (std::exchange(helper_, nullptr) != nullptr)
        time_.performAfter(chance_.between(0.01, 1.5), [this] { startHelper(); });
}

void World::jump(Seconds asleep, Seconds clockSetBy) {
    time_.clocks.sleep(asleep);
    time_.clocks.moveWall(clockSetBy);
    if (app_ != nullptr)
        app_->recheck.handler();
    if (helper_ != nullptr)
        helper_->loop.check();
    pass(0);
}

void World::pass(Seconds seconds) {
    time_.pass(seconds, [this] {
        if (helper_ != nullptr && helper_->ends > 0) {
            helper_->loop.stop();
            endHelper();
        }
        judge();
    });
}

void World::judge() {
    judgeSetting();
    if (app_ != nullptr)
        judgeApp();
    if (transport_.wasOverrun())
        fail("two requests were on their way at once");
}

void World::judgeSetting() {
    if (setting_.wasForeignOverwritten)
        fail("a setting that something else had turned on was written over");
    if (app_ != nullptr || helper_ == nullptr || setting_.failingWrites > 0)
        appOrTroubleAt_ = uptime();
    if (!setting_.isDisabled || setting_.isForeign() || helper_ == nullptr)
        return;
    const auto& keeper = helper_->keeper;
    if (!keeper.leaseExpiry() && !keeper.lastError() && keeper.isSleepDisabled())
        fail("the setting is on and no lease is held");
    if (keeper.leaseUptimeExpiry() && *keeper.leaseUptimeExpiry() - uptime() > LidSleepLease::duration + 1e-6)
        fail("a lease is held for longer than thirty seconds");
    // A lease is looked at by a timer, which runs as soon as this event is over.
    const bool isLeaseOver = keeper.leaseExpiry() && keeper.leaseUptimeExpiry() &&
                             (time_.clocks.now() - *keeper.leaseExpiry() > LidSleepLease::duration ||
                              uptime() - *keeper.leaseUptimeExpiry() > 2 * LidSleepLease::writeTimeout);
    if (isLeaseOver && !keeper.lastError())
        fail("the setting is on although the lease has lapsed");
    const Seconds longest = LidSleepLease::duration + LidSleepLease::retrySpacing + 1;
    if (uptime() - appOrTroubleAt_ > longest && keeper.isSleepDisabled())
        fail("the setting is on long after the app has gone");
}

void World::judgeApp() {
    if (!app_->fault.empty())
        fail(app_->fault);
    if (app_->lid.isOn() && !app_->blocker.isEngaged())
        fail("Deepwake is on without a confirmed lease");
    if (app_->assertion.engaged != app_->awake.isOn())
        fail("the assertion and the session differ");
    // What is due waits while the helper is busy: at the longest with its last tries before it ends.
    constexpr Seconds busy = LidHelperService::exitTimeout + 2 * LidSleepLease::writeTimeout;
    const auto end = app_->awake.activeUntil();
    if (app_->awake.isOn() && end && time_.clocks.now() - *end > busy)
        fail("the session is on although its end has passed");
    if (!app_->lid.isOn() || app_->awake.isOn())
        noSessionSince_.reset();
    else if (!noSessionSince_)
        noSessionSince_ = uptime();
    if (noSessionSince_ && uptime() - *noSessionSince_ > busy)
        fail("Deepwake is on without a session");
    constexpr Seconds longestWait = 30;
    if (waitsSince_ && uptime() - *waitsSince_ > longestWait)
        fail("a wait for the helper's answers does not end");
}

void World::fail(const std::string& what) {
    if (!fault_)
        fault_ = what + ", at uptime " + std::to_string(uptime());
}

} // namespace wakeloft
