#pragma once

#include "simulation/SimulatedApp.h"

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
    [[nodiscard]] int timesOn() const { return setting_.timesOn(); }
    [[nodiscard]] Seconds simulatedTime() const { return time_.total(); }

  private:
    void step();
    void userDoes();
    void processesDo();
    void faultsChange();
    void timeDoes();
    void calmDown();

    void startApp();
    void endApp();
    void endHelper();
    void clocksJumped();
    void pass(Seconds seconds);
    void did(std::string what) { steps_.push_back(std::move(what)); }

    void judge();
    void judgeSetting();
    void judgeApp();
    void fail(const std::string& what);
    [[nodiscard]] bool areWritesWorking() const { return setting_.failingWrites == 0; }

    Chance chance_;
    VirtualTime time_;
    SimulatedSetting setting_{time_, chance_};
    std::shared_ptr<SimulatedHelper> helper_;
    SimulatedTransport transport_{time_, chance_, helper_};
    SimulatedStores stores_;
    SimulatedRegistration registration_;
    std::unique_ptr<SimulatedApp> app_;

    Seconds appGoneSince_ = 0;          ///< uptime
    Seconds writesWorkSince_ = 0;       ///< uptime
    Seconds helperRunsSince_ = 0;       ///< uptime
    std::optional<Seconds> waitsSince_; ///< uptime at which somebody began to wait for the app to be settled
    std::vector<std::string> steps_;
    std::optional<std::string> fault_;
};

} // namespace wakeloft
