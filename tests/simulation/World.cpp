#include "simulation/World.h"

#include <algorithm>

namespace wakeloft {

namespace {
constexpr int stepsOfARun = 120;
} // namespace

World::World(std::uint64_t seed) : chance_(seed) {
    helper_ = std::make_shared<SimulatedHelper>(time_, setting_);
    helperRunsSince_ = time_.uptime();
    startApp();
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
    const auto kind = chance_.below(10);
    if (kind < 3)
        userDoes();
    else if (kind < 4)
        processesDo();
    else if (kind < 6)
        faultsChange();
    else
        timeDoes();
}

void World::userDoes() {
    if (app_ == nullptr) {
        did("the app is started");
        startApp();
        return;
    }
    switch (chance_.below(9)) {
    case 0:
        did("session toggled");
        app_->awake.toggle();
        break;
    case 1: {
        const Seconds length = chance_.between(-1, 120);
        did("session for " + std::to_string(length));
        app_->awake.turnOnFor(length);
        break;
    }
    case 2:
    case 3: {
        const Seconds length = chance_.between(1, 200);
        did("Deepwake on for " + std::to_string(length));
        app_->lid.turnOnFor(length);
        break;
    }
    case 4:
        did("Deepwake switched on");
        app_->lid.turnOnJoiningSessionOr(chance_.percent(50) ? std::optional(7200.0) : std::nullopt);
        break;
    case 5:
        did("Deepwake off");
        app_->lid.turnOff();
        break;
    case 6:
        did("the panel is opened");
        app_->awake.checkExpiry();
        app_->lid.checkLease();
        app_->lid.refresh();
        break;
    case 7:
        did("the heat warning is acknowledged");
        app_->lid.acknowledgeHeatWarning();
        break;
    default:
        did("somebody waits for the app to be settled");
        if (!waitsSince_) {
            waitsSince_ = time_.uptime();
            app_->lid.whenSettled([this] { waitsSince_.reset(); });
        }
    }
}

void World::processesDo() {
    switch (chance_.below(4)) {
    case 0:
        did("the app dies");
        endApp();
        break;
    case 1:
        did("the helper dies");
        endHelper();
        break;
    case 2:
        if (helper_ == nullptr)
            break;
        did("the helper is asked to end");
        helper_->loop.stop();
        endHelper();
        break;
    default:
        if (helper_ == nullptr)
            break;
        did("the helper's program is replaced");
        helper_->loop.programFound(LidHelperFileWatch::Finding::replaced("next"));
    }
}

void World::faultsChange() {
    const auto level = [this] { return static_cast<unsigned>(chance_.percent(50) ? 0 : chance_.below(101)); };
    switch (chance_.below(8)) {
    case 0:
        setting_.failingWrites = level();
        did("writes fail: " + std::to_string(setting_.failingWrites) + " %");
        if (areWritesWorking())
            writesWorkSince_ = time_.uptime();
        break;
    case 1:
        setting_.failingReads = level();
        setting_.hangs = level();
        did("reads fail: " + std::to_string(setting_.failingReads) + " %");
        break;
    case 2:
        transport_.lost = level() / 2;
        did("lost: " + std::to_string(transport_.lost) + " %");
        break;
    case 3:
        transport_.late = level() / 2;
        did("late: " + std::to_string(transport_.late) + " %");
        break;
    case 4:
        transport_.doubled = level();
        did("doubled: " + std::to_string(transport_.doubled) + " %");
        break;
    case 5: {
        const bool isOn = chance_.percent(50);
        did(isOn ? "somebody else sets 1" : "somebody else sets 0");
        const bool mayBeTaken = helper_ == nullptr || helper_->keeper.isSleepDisabled() ||
                                helper_->keeper.lastError().has_value();
        setting_.writeAsForeigner(isOn, mayBeTaken);
        break;
    }
    case 6:
        registration_.current = static_cast<LidHelperStatus>(chance_.below(4));
        did("registration: " + std::to_string(static_cast<int>(registration_.current)));
        break;
    default:
        if (app_ != nullptr)
            app_->assertion.refused = level();
        did("assertions are refused at times");
    }
}

void World::timeDoes() {
    switch (chance_.below(8)) {
    case 0: {
        const Seconds asleep = chance_.between(0.1, 100);
        did("asleep for " + std::to_string(asleep));
        time_.sleep(asleep);
        clocksJumped();
        break;
    }
    case 1: {
        const Seconds by = chance_.between(-4000, 4000);
        did("the clock is set by " + std::to_string(by));
        time_.setWall(by);
        clocksJumped();
        break;
    }
    default: {
        const Seconds seconds = chance_.percent(50) ? chance_.between(0, 3) : chance_.between(0, 60);
        did("awake for " + std::to_string(seconds));
        pass(seconds);
    }
    }
}

/// Everything works again: then everything must settle.
void World::calmDown() {
    did("everything works again");
    setting_.failingWrites = setting_.failingReads = transport_.lost = transport_.late = transport_.doubled =
        0;
    registration_.current = LidHelperStatus::enabled;
    writesWorkSince_ = time_.uptime();
    if (helper_ == nullptr)
        pass(2); // the system starts it again
    pass(30);
    if (app_ != nullptr) {
        app_->lid.turnOff();
        app_->lid.checkLease();
        pass(10);
        if (!app_->lid.isSettled())
            fail("requests to the helper are never answered");
        // The first try may meet a helper that is about to end, the second the connection to it.
        for (int tries = 0; tries < 3 && app_->lid.lastFailure(); ++tries) {
            app_->lid.turnOff();
            pass(10);
        }
        if (app_->lid.lastFailure())
            fail("a reset that works is not confirmed");
    }
    endApp();
    pass(LidSleepLease::duration + LidSleepLease::retrySpacing + 1);
    if (setting_.isDisabled() && !setting_.isForeign())
        fail("the setting stays on after all has ended");
}

void World::startApp() {
    transport_.beginAnew();
    app_ = std::make_unique<SimulatedApp>(time_, chance_, transport_, stores_, registration_);
}

void World::endApp() {
    if (app_ == nullptr)
        return;
    app_.reset();
    waitsSince_.reset();
    appGoneSince_ = time_.uptime();
}

/// The system starts it again a moment later.
void World::endHelper() {
    if (helper_ == nullptr)
        return;
    helper_.reset();
    time_.performAfter(chance_.between(0.01, 1.5), [this] {
        if (helper_ != nullptr)
            return;
        helper_ = std::make_shared<SimulatedHelper>(time_, setting_);
        helperRunsSince_ = time_.uptime();
    });
}

void World::clocksJumped() {
    if (app_ != nullptr)
        app_->recheck.handler();
    if (helper_ != nullptr)
        helper_->loop.check();
    pass(0);
}

void World::pass(Seconds seconds) {
    time_.pass(seconds, [this] {
        if (helper_ != nullptr && helper_->wantsToEnd) {
            helper_->loop.stop();
            endHelper();
        }
        judge();
    });
}

void World::judge() {
    if (fault_)
        return;
    judgeSetting();
    if (app_ != nullptr)
        judgeApp();
    if (transport_.wasOverrun())
        fail("two requests were on their way at once");
}

void World::judgeSetting() {
    if (setting_.wasForeignOverwritten())
        fail("a setting that something else had turned on was written over");
    if (!setting_.isDisabled() || setting_.isForeign() || helper_ == nullptr)
        return;
    const auto& keeper = helper_->keeper;
    if (!keeper.leaseExpiry() && !keeper.lastError() && keeper.isSleepDisabled())
        fail("the setting is on and no lease is held");
    // A lease is looked at by a timer, which runs as soon as this event is over.
    const bool isLeaseOver = keeper.leaseExpiry() && keeper.leaseUptimeExpiry() &&
                             (time_.now() - *keeper.leaseExpiry() > LidSleepLease::duration ||
                              time_.uptime() - *keeper.leaseUptimeExpiry() > 2 * LidSleepLease::writeTimeout);
    if (isLeaseOver && !keeper.lastError())
        fail("the setting is on although the lease has lapsed");
    const Seconds since = std::max({appGoneSince_, writesWorkSince_, helperRunsSince_});
    const Seconds longest = LidSleepLease::duration + LidSleepLease::retrySpacing + 1;
    if (app_ == nullptr && areWritesWorking() && time_.uptime() - since > longest && keeper.isSleepDisabled())
        fail("the setting is on long after the app has gone");
}

void World::judgeApp() {
    if (!app_->fault().empty())
        fail(app_->fault());
    if (app_->lid.isOn() && !app_->blocker.isEngaged())
        fail("Deepwake is on without a confirmed lease");
    if (app_->assertion.isHeld != app_->awake.isOn())
        fail("the assertion and the session differ");
    constexpr Seconds longestWait = 30;
    if (waitsSince_ && time_.uptime() - *waitsSince_ > longestWait)
        fail("a wait for the helper's answers does not end");
}

void World::fail(const std::string& what) {
    if (!fault_)
        fault_ = what + ", at uptime " + std::to_string(time_.uptime());
}

} // namespace wakeloft
