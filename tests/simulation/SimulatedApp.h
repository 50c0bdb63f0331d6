#pragma once

#include "lid/LidAwakeController.h"
#include "lid/LidAwakeStore.h"
#include "lid/XPCLidSleepBlocker.h"
#include "session/AwakeController.h"
#include "simulation/SimulatedHelper.h"

#include <string>
#include <tuple>

namespace wakeloft {

/// The power assertion; refuses at times.
struct SimulatedAssertion final : SleepBlocker {
    explicit SimulatedAssertion(Chance& ownChance) : chance(ownChance) {}

    std::expected<void, Error> engage() override {
        isHeld = isHeld || !chance.percent(refused);
        return isHeld ? std::expected<void, Error>()
                      : std::unexpected(Error(SleepBlockerError::assertionFailed(-1)));
    }
    void release() override { isHeld = false; }
    [[nodiscard]] bool isEngaged() const override { return isHeld; }

    Chance& chance;
    unsigned refused = 0; ///< percent
    bool isHeld = false;
};

struct SimulatedRegistration final : LidHelperRegistration {
    LidHelperStatus current = LidHelperStatus::enabled;

    [[nodiscard]] LidHelperStatus status() const override { return current; }
    std::expected<void, Error> registerHelper() override {
        if (current == LidHelperStatus::notRegistered)
            current = LidHelperStatus::requiresApproval;
        return {};
    }
};

struct SimulatedNotices final : DeadlineRecheckNotifier, MachineConditionsNotifier {
    std::function<void()> handler;
    void observe(std::function<void()> latest) override { handler = std::move(latest); }
};

/// What outlives the app: its stored preferences.
struct SimulatedStores {
    InMemoryAwakeIntentStore intent{StoredAwakeIntent::intent(AwakeIntent::off())};
    InMemoryLidAwakeStore lid;
};

/// The app process: the real controllers and client. Destroying it is its crash.
struct SimulatedApp {
    SimulatedApp(VirtualTime& time, Chance& chance, SimulatedTransport& transport, SimulatedStores& stores,
                 SimulatedRegistration& registration);

    /// What observers were told wrongly, empty when all was well.
    [[nodiscard]] const std::string& fault() const { return fault_; }

    VirtualTimer sessionTimer, leaseTimer, lidDeadlineTimer;
    SimulatedNotices recheck, conditions;
    StaticMachineConditions machine{true, false};
    SimulatedAssertion assertion;
    AwakeController awake;
    XPCLidSleepBlocker blocker;
    LidAwakeController lid;

  private:
    using AwakeFields = std::tuple<bool, bool, std::optional<AwakeFailure>, std::optional<Date>>;
    using LidFields = std::tuple<bool, bool, std::optional<AwakeFailure>, bool>;
    [[nodiscard]] AwakeFields awakeFields() const;
    [[nodiscard]] LidFields lidFields() const;

    AwakeFields lastAwake_;
    LidFields lastLid_;
    std::string fault_;
    Subscription awakeChanges_, lidChanges_;
};

} // namespace wakeloft
