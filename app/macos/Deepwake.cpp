#include "Deepwake.h"

#include "CodeSigningIdentity.h"
#include "XPCLidLeaseConnection.h"
#include "lease/LidHelperService.h"

namespace wakeloft {

namespace {

/// Only the helper that the same team signed may answer; nobody where the app has no team.
std::optional<std::string> helperRequirement() {
    return LidHelperService::codeRequirement(LidHelperService::label,
                                             CodeSigningIdentity::currentTeamIdentifier());
}

} // namespace

Deepwake::Deepwake(AwakeController& riding, UserDefaults& defaults, const DateProvider& dates,
                   MainRunLoop& loop)
    : registration_(LidHelperService::plistName),
      blocker_(registration_, helperRequirement(), LidSleepLease::replyTimeout, xpcLidLeaseConnections(),
               loop),
      store_(defaults),
      scheduler_(dates),
      deadlineScheduler_(dates),
      controller_(riding, blocker_, store_, conditions_, conditionsNotifier_, dates, scheduler_,
                  deadlineScheduler_) {}

} // namespace wakeloft
