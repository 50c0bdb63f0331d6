#pragma once

#include "CFMainRunLoop.h"
#include "FileEvents.h"
#include "LidLeaseXPCListener.h"
#include "PmsetSleepSetting.h"
#include "SystemClocks.h"
#include "WallAndUptimeTimer.h"
#include "lease/LidHelperLoop.h"
#include "lid/LidHelperFileWatch.h"

#include <memory>
#include <optional>

namespace wakeloft {

/// The helper as a whole: the lease core, the sleep setting, and the clients on the mach service. Main
/// thread. It lasts as long as the process, for XPC's threads may be in it until then.
class LidHelper {
  public:
    /// Puts the sleep setting back at once.
    LidHelper();
    LidHelper(const LidHelper&) = delete;
    LidHelper& operator=(const LidHelper&) = delete;
    ~LidHelper() = delete;

    /// Serves until `end()`, then puts the setting back. The process's exit code.
    int run();
    /// Asks `run()` to return.
    void end();

  private:
    void watchFile();
    void look();

    CFMainRunLoop loop_;
    bool isOver_ = false;
    SystemDateProvider dates_;
    SystemUptimeProvider uptime_;
    WallAndUptimeTimer timer_;
    PmsetSleepSetting setting_;
    LidSleepLeaseKeeper keeper_;
    LidLeaseService service_;
    std::optional<LidHelperFileWatch> watch_; ///< from `run()` on
    LidHelperLoop helper_;
    std::optional<std::string> teamIdentifier_;
    std::shared_ptr<LidLeaseListener> listener_;
    LidLeaseXPCListener clients_;
    std::optional<std::string> launchedPath_;
    std::optional<std::string> codeDirectoryHash_;
    std::unique_ptr<FileEvents> fileEvents_;
};

} // namespace wakeloft
