#pragma once

#include "lease/LidHelperLoop.h"
#include "lease/LidLeaseListener.h"
#include "lid/LidLeaseClientConnection.h"
#include "simulation/SimulatedSetting.h"

#include <optional>
#include <string>

namespace wakeloft {

/// A helper process: the real keeper, service, loop and listener. Destroying it is its crash.
struct SimulatedHelper {
    SimulatedHelper(VirtualTime& time, SimulatedSetting& setting);

    VirtualTime& time;
    VirtualTimer timer{time};
    LidSleepLeaseKeeper keeper;
    LidLeaseService service;
    bool wantsToEnd = false;
    LidHelperLoop loop;
    LidLeaseListener listener;
};

/// What lies between the app and whichever helper runs: delays, losses, doubled and late answers.
class SimulatedTransport {
  public:
    SimulatedTransport(VirtualTime& time, Chance& chance, std::shared_ptr<SimulatedHelper>& helper)
        : time_(time), chance_(chance), helper_(helper) {}

    std::unique_ptr<LidLeaseClientConnection> connect();

    unsigned lost = 0;    ///< percent of requests and of answers
    unsigned late = 0;    ///< percent that take seconds
    unsigned doubled = 0; ///< percent of answers

    /// The app is a new one: what a former one asked does not count any more.
    void beginAnew() { latest_.reset(); }
    /// Two requests of one app were on their way at once.
    [[nodiscard]] bool wasOverrun() const { return wasOverrun_; }

  private:
    class Connection;
    /// A request of the app's; knows when the next one may follow.
    struct Request {
        Seconds sentAt;
        bool isFinished = false;
    };
    std::shared_ptr<Request> begin();
    void deliver(std::function<void()> work);

    VirtualTime& time_;
    Chance& chance_;
    std::shared_ptr<SimulatedHelper>& helper_;
    std::weak_ptr<Request> latest_;
    bool wasOverrun_ = false;
};

} // namespace wakeloft
