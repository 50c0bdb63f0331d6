#include "Ending.h"

#include "DispatchTime.h"
#include "HelperLog.h"
#include "lease/LidHelperService.h"

#import <Foundation/Foundation.h>

#include <csignal>
#include <cstdlib>
#include <unistd.h>
#include <vector>

namespace wakeloft {

namespace {

dispatch_queue_t anotherQueue() {
    return dispatch_get_global_queue(QOS_CLASS_USER_INITIATED, 0);
}

} // namespace

void watchTerminationSignals(std::function<void()> received) {
    static std::vector<dispatch_source_t> sources; // for the life of the process
    for (const int signal : {SIGTERM, SIGINT}) {
        std::signal(signal, SIG_IGN); // the source sees it all the same
        dispatch_source_t source = dispatch_source_create(DISPATCH_SOURCE_TYPE_SIGNAL,
                                                          static_cast<uintptr_t>(signal), 0, anotherQueue());
        dispatch_source_set_event_handler(source, ^{
            limitEnding();
            dispatch_async(dispatch_get_main_queue(), ^{
                received();
            });
        });
        dispatch_activate(source);
        sources.push_back(source);
    }
}

void limitEnding() {
    const auto when = dispatch_time(DISPATCH_TIME_NOW, dispatchNanoseconds(LidHelperService::exitTimeout));
    dispatch_after(when, anotherQueue(), ^{
        logLine(LogPriority::error, "The helper does not come to an end: it is cut short.");
        _exit(EXIT_FAILURE);
    });
}

} // namespace wakeloft
