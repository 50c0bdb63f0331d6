#pragma once

#include "simulation/SimulatedApp.h"
#include "simulation/SimulatedSetting.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace wakeloft {

/// One machine with the app and the helper on it, driven by a seed through steps of use, faults and time, and
/// judged after every event.
class World {
  public:
    explicit World(std::uint64_t seed);

    /// What went wrong, with the steps that led there; nothing when all was well.
    std::optional<std::string> run();
    [[nodiscard]] int timesOn() const { return setting_.timesOn; }
    [[nodiscard]] Seconds simulatedTime() const { return time_.clocks.sinceBoot - ManualClocks().sinceBoot; }

  private:
    /// What may happen in a step, with an amount by chance.
    struct Event {
        unsigned weight;
        std::string name;
        std::function<void(Seconds)> happen;
        Seconds least = 0;
        Seconds most = 0;
    };
    std::vector<Event> events();
    void step();
    void calmDown();
    void useInPeace();

    SimulatedApp& app();
    void startHelper();
    void endHelper();
    void jump(Seconds asleep, Seconds clockSetBy);
    void pass(Seconds seconds);

    void judge();
    void judgeSetting();
    void judgeApp();
    void fail(const std::string& what);
    [[nodiscard]] Seconds uptime() const { return time_.clocks.awake; }

    Chance chance_;
    ManualRunLoop time_;
    SimulatedSetting setting_{time_, chance_};
    VirtualTimer helperTimer_{time_};
    std::shared_ptr<AssembledHelper> helper_;
    SimulatedTransport transport_{time_, chance_, helper_};
    InMemoryAwakeIntentStore intents_{false, std::nullopt}; // what is stored outlives the app
    InMemoryLidAwakeStore lidStore_;
    ManualRegistration registration_;
    std::unique_ptr<SimulatedApp> app_;
    std::vector<Event> events_ = events();

    Seconds appOrTroubleAt_ = 0; ///< uptime at which there was an app, no helper or writes that fail
    std::optional<Seconds> noSessionSince_; ///< uptime from which Deepwake has been on without a session
    std::optional<Seconds> waitsSince_; ///< uptime at which somebody began to wait for the app to be settled
    std::vector<std::string> steps_;
    std::optional<std::string> fault_;
};

} // namespace wakeloft
