#pragma once

#include "SMAppServiceLidHelperRegistration.h"
#include "SystemMachineConditions.h"
#include "SystemMachineConditionsNotifier.h"
#include "TimerDeadlineScheduler.h"
#include "lid/LidAwakeController.h"
#include "lid/XPCLidSleepBlocker.h"

namespace wakeloft {

/// Deepwake's controller with all that it works on. Main thread.
class Deepwake {
  public:
    /// All of it must outlive this, `loop` the helper's late answers too.
    Deepwake(AwakeController& riding, UserDefaults& defaults, const DateProvider& dates, MainRunLoop& loop);

    LidAwakeController& controller() { return controller_; }

  private:
    SMAppServiceLidHelperRegistration registration_;
    XPCLidSleepBlocker blocker_;
    UserDefaultsLidAwakeStore store_;
    SystemMachineConditions conditions_;
    SystemMachineConditionsNotifier conditionsNotifier_;
    TimerDeadlineScheduler scheduler_;
    TimerDeadlineScheduler deadlineScheduler_;
    LidAwakeController controller_;
};

} // namespace wakeloft
