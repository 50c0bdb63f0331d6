#pragma once

#include "BusLidHelperRegistration.h"
#include "DesktopLidAction.h"
#include "SystemMachineConditions.h"
#include "SystemMachineConditionsNotifier.h"
#include "TimerDeadlineScheduler.h"
#include "lid/LidAwakeController.h"
#include "lid/XPCLidSleepBlocker.h"

namespace wakeloft {

/// Deepwake's controller with all that it works on. Main thread.
class Deepwake {
  public:
    using Trouble = std::function<void(const PlatformError&)>;

    /// `sessionBus` may be null. `trouble` is told what the system does not tell. All but that must outlive
    /// it.
    Deepwake(AwakeController& riding, UserDefaults& defaults, const DateProvider& dates, sd_event* event,
             MainRunLoop& loop, BusConnection& systemBus, sd_bus* sessionBus, const Trouble& trouble);

    LidAwakeController& controller() { return controller_; }

  private:
    BusLidHelperRegistration registration_;
    SystemMachineConditions conditions_;
    DesktopLidAction lidAction_;
    XPCLidSleepBlocker blocker_;
    UserDefaultsLidAwakeStore store_;
    SystemMachineConditionsNotifier conditionsNotifier_;
    TimerDeadlineScheduler scheduler_;
    TimerDeadlineScheduler deadlineScheduler_;
    LidAwakeController controller_;
};

} // namespace wakeloft
