#pragma once

#include "SdEventMainRunLoop.h"
#include "support/ListedInhibitors.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>

#include <sys/types.h>

namespace wakeloft {

/// The machine of the rig: its login manager, how it sleeps, and with the rig's option --lid the lid and the
/// lid helper.
class Laptop {
  public:
    Laptop() { reconnect(); }

    /// After a restart of the bus.
    void reconnect();
    /// The path of a file in the rig's folder.
    static std::string file(const std::string& name);
    /// Runs a command of the rig, which is to succeed: "polkit no".
    static void order(const std::string& command);
    /// The real login manager, not the embedded one.
    static bool isReal();

    static void shutLid() { order("lid close"); }
    /// And waits until the machine has woken up.
    void openLid();
    /// Lets `event` happen and waits until the machine is put to sleep: the milliseconds since the event's
    /// beginning, or nothing after `timeoutMs`. With the lid shut and nothing to hold it awake it sleeps
    /// again and again.
    static std::optional<double> sleepsAfter(const std::function<void()>& event, double timeoutMs);

    /// Wakeloft's inhibitors of that kind, of any kind where none is given; -1 without a login manager.
    int inhibitors(const std::string& what = "");
    static constexpr const char* session = "idle";
    static constexpr const char* lock = "sleep:handle-lid-switch";
    int sessions() { return inhibitors(session); }
    int locks() { return inhibitors(lock); }
    /// The milliseconds until there were so many.
    std::optional<double> waitFor(const std::string& what, int count);
    std::optional<double> waitForSessions(int count) { return waitFor(session, count); }
    std::optional<double> waitForLocks(int count) { return waitFor(lock, count); }
    /// How long inhibitors of that kind last beyond the end of what holds them, in milliseconds. Prints both.
    struct Lasting {
        double median, worst;
    };
    Lasting lasting(const char* what, const std::string& kind, int rounds, const std::function<void()>& hold,
                    const std::function<void()>& end);

    /// The helper's process, 0 where none runs.
    pid_t helper();
    /// To the helper, which is to run.
    void signalHelper(int number);
    /// Until the helper has answered all that it was asked so far: a lock is there before its asker knows.
    void waitForHelpersAnswers();

  private:
    std::unique_ptr<SdEventMainRunLoop> loop_ = std::move(SdEventMainRunLoop::create().value());
    BusPointer bus_;
};

} // namespace wakeloft
