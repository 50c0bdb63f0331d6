#include "SystemDeadlineRecheckNotifier.h"

#include "support/MainThread.h"

#import <AppKit/AppKit.h>

namespace wakeloft {

using Handler = std::function<void()>;

struct SystemDeadlineRecheckNotifier::Observation {
    NSNotificationCenter* workspaceCenter = NSWorkspace.sharedWorkspace.notificationCenter;
    NSNotificationCenter* defaultCenter = NSNotificationCenter.defaultCenter;
    id<NSObject> wakeToken = nil;
    id<NSObject> clockToken = nil;
    std::shared_ptr<const Handler> handler;
};

namespace {

void tell(const std::weak_ptr<const Handler>& latest) {
    requireMainThread("a handler of wakes and clock changes");
    if (const auto handler = latest.lock()) // it may observe anew, or end the notifier
        (*handler)();
}

} // namespace

SystemDeadlineRecheckNotifier::SystemDeadlineRecheckNotifier()
    : observation_(std::make_unique<Observation>()) {}

SystemDeadlineRecheckNotifier::~SystemDeadlineRecheckNotifier() {
    stopObserving();
}

void SystemDeadlineRecheckNotifier::observe(Handler handler) {
    stopObserving();
    observation_->handler = std::make_shared<const Handler>(std::move(handler));
    // No cycle: the centres hold the block, and the block holds neither them nor this object, and the handler
    // weakly: one that came from another thread and is late finds it gone.
    const std::weak_ptr<const Handler> latest = observation_->handler;
    void (^delivered)(NSNotification*) = ^(NSNotification*) {
        if (NSThread.isMainThread)
            tell(latest);
        else
            dispatch_async(dispatch_get_main_queue(), ^{
                tell(latest);
            });
    };
    observation_->wakeToken = [observation_->workspaceCenter addObserverForName:NSWorkspaceDidWakeNotification
                                                                         object:nil
                                                                          queue:nil
                                                                     usingBlock:delivered];
    observation_->clockToken =
        [observation_->defaultCenter addObserverForName:NSSystemClockDidChangeNotification
                                                 object:nil
                                                  queue:nil
                                             usingBlock:delivered];
}

void SystemDeadlineRecheckNotifier::stopObserving() {
    requireMainThread("SystemDeadlineRecheckNotifier");
    if (id<NSObject> token = std::exchange(observation_->wakeToken, nil))
        [observation_->workspaceCenter removeObserver:token];
    if (id<NSObject> token = std::exchange(observation_->clockToken, nil))
        [observation_->defaultCenter removeObserver:token];
}

} // namespace wakeloft
