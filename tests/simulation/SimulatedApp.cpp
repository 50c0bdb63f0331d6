#include "simulation/SimulatedApp.h"

namespace wakeloft {

SimulatedApp::SimulatedApp(VirtualTime& time, Chance& chance, SimulatedTransport& transport,
                           SimulatedStores& stores, SimulatedRegistration& registration)
    : sessionTimer(time),
      leaseTimer(time),
      lidDeadlineTimer(time),
      assertion(chance),
      awake(assertion, stores.intent, time, time, sessionTimer, recheck, true),
      blocker(
          registration, "the helper", LidSleepLease::replyTimeout,
          [&transport](const std::string&) { return transport.connect(); }, time),
      lid(awake, blocker, stores.lid, machine, conditions, time, leaseTimer, lidDeadlineTimer),
      lastAwake_(awakeFields()),
      lastLid_(lidFields()) {
    awakeChanges_ = awake.changed().subscribe([this] {
        if (const auto fields = awakeFields(); std::exchange(lastAwake_, fields) == fields)
            fault_ = "an observer of the session heard of a change that was none";
    });
    lidChanges_ = lid.changed().subscribe([this] {
        // Of two failures only the graver one is seen: a change of the other is real all the same.
        if (const auto fields = lidFields(); std::exchange(lastLid_, fields) == fields && !lid.lastFailure())
            fault_ = "an observer of Deepwake heard of a change that was none";
    });
}

SimulatedApp::AwakeFields SimulatedApp::awakeFields() const {
    return {awake.isOn(), awake.isRequested(), awake.lastFailure(), awake.activeUntil()};
}

SimulatedApp::LidFields SimulatedApp::lidFields() const {
    return {lid.isOn(), lid.isTurningOn(), lid.lastFailure(), lid.hasAcknowledgedHeatWarning()};
}

} // namespace wakeloft
