#pragma once

#include "SdEventMainRunLoop.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <sys/types.h>

namespace wakeloft {

/// The machine of the rig: how it sleeps, and with its option --lid the lid and the lid helper.
class Laptop {
  public:
    Laptop() { reconnect(); }

    /// After a restart of the bus.
    void reconnect();
    [[nodiscard]] static bool hasLid();
    /// The path of a file in the rig's folder.
    static std::string file(const std::string& name);
    /// Runs a command of the rig, which is to succeed.
    static void order(std::vector<std::string> command);

    static void setLid(bool isClosed) { order({"lid", isClosed ? "close" : "open"}); }
    /// How often it has been put to sleep. With the lid shut and nothing to hold it awake it sleeps again and
    /// again.
    static int suspends();
    /// Lets `event` happen and waits until the machine is put to sleep: the milliseconds since the event's
    /// beginning, or nothing after `timeoutMs`.
    static std::optional<double> sleepsAfter(const std::function<void()>& event, double timeoutMs);
    /// Waits until it has woken up.
    void settle();

    /// The helper's locks; -1 without a login manager.
    int locks();
    /// The milliseconds until there were so many.
    std::optional<double> waitForLocks(int count);
    /// The helper's process, 0 where none runs.
    pid_t helper();
    /// To the helper, which is to run.
    void signalHelper(int number);

  private:
    std::unique_ptr<SdEventMainRunLoop> loop_ = std::move(SdEventMainRunLoop::create().value());
    BusPointer bus_;
};

} // namespace wakeloft
