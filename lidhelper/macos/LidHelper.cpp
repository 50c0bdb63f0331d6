#include "LidHelper.h"

#include "BundleVersion.h"
#include "CodeSigningIdentity.h"
#include "Ending.h"
#include "HelperLog.h"
#include "RunningLidHelper.h"
#include "SleepDisabledProperty.h"
#include "lease/LidHelperService.h"

#include <CoreFoundation/CoreFoundation.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <thread>
#include <utility>

namespace wakeloft {

namespace {

void logNotice(const std::string& line) {
    logLine(LogPriority::notice, line);
}

} // namespace

LidHelper::LidHelper()
    : setting_(readSleepDisabledProperty),
      keeper_(setting_, dates_, uptime_),
      service_(keeper_, logNotice),
      helper_(
          service_, keeper_,
          {.dates = dates_,
           .uptime = uptime_,
           .timer = timer_,
           .log = logNotice,
           .settled = [this] { look(); },
           .end = [this] { end(); },
           .pause =
               [](Seconds seconds) { std::this_thread::sleep_for(std::chrono::duration<double>(seconds)); }}),
      teamIdentifier_(CodeSigningIdentity::currentTeamIdentifier()),
      listener_(std::make_shared<LidLeaseListener>(
          LidHelperService::codeRequirement(LidHelperService::appIdentifier, teamIdentifier_),
          helper_.requests(loop_))),
      clients_(listener_),
      launchedPath_(wakeloft::launchedPath(getpid())),
      codeDirectoryHash_(CodeSigningIdentity::currentCodeDirectoryHash()) {}

int LidHelper::run() {
    const auto path = executablePath();
    logNotice(LidHelperService::startLine(path, launchedPath_, codeDirectoryHash_,
                                          path ? bundleVersionAround(*path) : std::nullopt));
    if (!listener_->callerRequirement())
        logLine(LogPriority::error, "This helper is not signed by a team, so it lets nobody in.");
    clients_.resume();
    watchFile();
    if (!isOver_)
        CFRunLoopRun();
    limitEnding();
    return helper_.stop() && isOver_ ? EXIT_SUCCESS : EXIT_FAILURE;
}

void LidHelper::end() {
    isOver_ = true;
    CFRunLoopStop(CFRunLoopGetMain());
}

// Without the watch the helper serves all the same.
void LidHelper::watchFile() {
    watch_ = watchForRunningHelper(launchedPath_, runningExecutable(), codeDirectoryHash_, teamIdentifier_);
    if (!watch_) {
        logNotice("This helper does not know what it is itself, so it is not told of a new one.");
        return;
    }
    auto events = FileEvents::watch(*launchedPath_, [this] { look(); });
    if (events)
        fileEvents_ = std::move(*events);
    else
        logLine(LogPriority::error, events.error().description);
    look();
}

void LidHelper::look() {
    if (!watch_)
        return;
    const auto [finding, hasChanged] = watch_->look();
    if (!hasChanged)
        return;
    logNotice(finding.sentence());
    helper_.programFound(finding);
}

} // namespace wakeloft
