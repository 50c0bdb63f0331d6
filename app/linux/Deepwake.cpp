#include "Deepwake.h"

#include "LidLeaseBusConnection.h"
#include "lease/LidHelperService.h"

namespace wakeloft {

Deepwake::Deepwake(AwakeController& riding, UserDefaults& defaults, const DateProvider& dates,
                   sd_event* event, MainRunLoop& loop, BusConnection& systemBus, sd_bus* sessionBus,
                   const Trouble& trouble)
    : registration_(systemBus, trouble),
      conditions_(systemBus, trouble),
      lidAction_(sessionBus, conditions_, trouble),
      blocker_(registration_, LidHelperService::label, LidSleepLease::replyTimeout,
               LidLeaseBusConnection::factory(
                   event, [this] { return lidAction_.isSleep(); }, trouble),
               loop),
      store_(defaults),
      conditionsNotifier_(event, conditions_, trouble),
      scheduler_(event, dates),
      deadlineScheduler_(event, dates),
      controller_(riding, blocker_, store_, conditions_, conditionsNotifier_, dates, scheduler_,
                  deadlineScheduler_) {}

} // namespace wakeloft
