#pragma once

#include "lid/LidAwakeController.h"
#include "lid/LidAwakeStore.h"
#include "lid/XPCLidSleepBlocker.h"
#include "simulation/SimulatedTransport.h"
#include "simulation/VirtualTimer.h"
#include "twins/LidTwins.h"
#include "twins/SessionTwins.h"

#include <tuple>

namespace wakeloft {

/// The app process: the real controllers and client. Destroying it is its crash.
struct SimulatedApp {
    ManualRunLoop& time;
    SimulatedTransport& transport;
    AwakeIntentStore& intents;
    LidAwakeStore& lidStore;
    LidHelperRegistration& registration;

    using AwakeFields = std::tuple<bool, bool, std::optional<AwakeFailure>, std::optional<Date>>;
    [[nodiscard]] AwakeFields awakeFields() const {
        return {awake.isOn(), awake.isRequested(), awake.lastFailure(), awake.activeUntil()};
    }
    using LidFields = std::tuple<bool, bool, std::optional<AwakeFailure>, bool>;
    [[nodiscard]] LidFields lidFields() const {
        return {lid.isOn(), lid.isTurningOn(), lid.lastFailure(), lid.hasAcknowledgedHeatWarning()};
    }

    VirtualTimer sessionTimer{time}, leaseTimer{time}, lidDeadlineTimer{time};
    ManualRecheck recheck{};
    ManualConditions conditions{};
    ManualBlocker assertion{};
    AwakeController awake{assertion, intents, time.clocks, time.clocks, sessionTimer, recheck, true};
    XPCLidSleepBlocker blocker{registration, "the helper", LidSleepLease::replyTimeout,
                               [this](const std::string&) { return transport.connect(); }, time};
    LidAwakeController lid{awake,      blocker,     lidStore,   conditions,
                           conditions, time.clocks, leaseTimer, lidDeadlineTimer};

    std::string fault{}; ///< what observers were told wrongly, empty when all was well
    AwakeFields lastAwake = awakeFields();
    LidFields lastLid = lidFields();
    Subscription awakeChanges = awake.changed().subscribe([this] {
        if (const auto fields = awakeFields(); std::exchange(lastAwake, fields) == fields)
            fault = "an observer of the session heard of a change that was none";
    });
    Subscription lidChanges = lid.changed().subscribe([this] {
        // Of two failures only the graver one is seen: a change of the other is real all the same.
        if (const auto fields = lidFields(); std::exchange(lastLid, fields) == fields && !lid.lastFailure())
            fault = "an observer of Deepwake heard of a change that was none";
    });
};

} // namespace wakeloft
