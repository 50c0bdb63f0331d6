#pragma once

#include "BatteryWarning.h"
#include "BootTimer.h"
#include "BusConnection.h"
#include "ClosedLidSuspend.h"
#include "CrashMark.h"
#include "LidLeaseBusService.h"
#include "LogindSleepSetting.h"
#include "PolkitAuthority.h"
#include "SdEventMainRunLoop.h"
#include "SystemClocks.h"
#include "SystemDeadlineRecheckNotifier.h"
#include "lease/LidHelperLoop.h"

#include <memory>

namespace wakeloft {

/// The helper as a whole: the lease core, the login manager's lock, and the clients on the system bus. Main
/// thread.
class LidHelper {
  public:
    /// Lets go at once of whatever is its own to let go.
    explicit LidHelper(SdEventMainRunLoop& loop);

    /// Sets everything up, and answers clients from then on.
    std::expected<void, PlatformError> start();
    /// Runs until `end()` or the loss of the bus, then puts the setting back. The process's exit code.
    int run();
    /// What is left to do after a helper that crashed while it held the lock: the process's exit code.
    static int afterCrash(SdEventMainRunLoop& loop);
    /// Asks `run()` to return.
    void end() { isOver_ = true; }
    /// What is now where this program was started from; see `LidHelperLoop`.
    void programFound(const LidHelperFileWatch::Finding& finding) { helper_.programFound(finding); }

  private:
    void settled();
    void watchOver(bool isHeld);
    void batteryChanged(bool isCritical);

    SdEventMainRunLoop& loop_;
    bool isOver_ = false;
    bool isBusLost_ = false;
    bool hasWatchdogState_ = false; ///< the service manager was told
    bool isWatchedOver_ = false;
    CrashMark crashMark_;
    BusConnection systemBus_;
    BusConnection clientBus_; ///< the clients' alone
    SystemDateProvider dates_;
    SystemUptimeProvider uptime_;
    BootTimer timer_;
    LogindSleepSetting setting_;
    LidSleepLeaseKeeper keeper_;
    LidLeaseService service_;
    std::unique_ptr<ClosedLidSuspend> suspend_; ///< these three from `start()` on
    std::unique_ptr<BatteryWarning> battery_;
    std::unique_ptr<LidLeaseBusService> clients_;
    LidHelperLoop helper_;
    LidLeaseListener listener_;
    std::unique_ptr<PolkitAuthority> authority_;
    SystemDeadlineRecheckNotifier recheck_;
    Subscription busLost_;
    Subscription clientBusLost_;
    Lifetime lifetime_;
};

} // namespace wakeloft
