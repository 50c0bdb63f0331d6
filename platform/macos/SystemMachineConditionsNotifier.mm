#include "SystemMachineConditionsNotifier.h"

#include "Owned.h"
#include "support/MainThread.h"

#import <AppKit/AppKit.h>
#include <IOKit/ps/IOPowerSources.h>

#include <array>
#include <utility>

namespace wakeloft {

struct SystemMachineConditionsNotifier::Observation {
    std::function<void()> handler;
    Owned<CFRunLoopSourceRef> powerSource;
    id<NSObject> screenToken;

    void tell() const {
        requireMainThread("a handler of the machine's conditions");
        const auto run = handler; // it may observe anew, or end the notifier
        run();
    }
};

namespace {

/// Power changes are to be noticed while a menu is open, too.
std::array<CFRunLoopMode, 2> modes() {
    return {kCFRunLoopCommonModes, (__bridge CFStringRef)NSEventTrackingRunLoopMode};
}

} // namespace

SystemMachineConditionsNotifier::SystemMachineConditionsNotifier() = default;

SystemMachineConditionsNotifier::~SystemMachineConditionsNotifier() {
    stopObserving();
}

void SystemMachineConditionsNotifier::observe(std::function<void()> handler) {
    stopObserving();
    observation_ = std::make_unique<Observation>();
    observation_->handler = std::move(handler);
    // Neither the centre nor the source owns the observation: both are taken off before it ends. So there is
    // no cycle, and nothing that points to what is gone.
    Observation* observation = observation_.get();
    observation->screenToken = [NSNotificationCenter.defaultCenter
        addObserverForName:NSApplicationDidChangeScreenParametersNotification
                    object:nil
                     queue:nil
                usingBlock:^(NSNotification*) {
                    observation->tell();
                }];
    observation->powerSource.reset(IOPSNotificationCreateRunLoopSource(
        [](void* context) { static_cast<Observation*>(context)->tell(); }, observation));
    if (!observation->powerSource) {
        NSLog(@"Wakeloft: changes of the power source cannot be followed.");
        return;
    }
    for (const CFRunLoopMode mode : modes())
        CFRunLoopAddSource(CFRunLoopGetMain(), observation->powerSource.get(), mode);
}

void SystemMachineConditionsNotifier::stopObserving() {
    requireMainThread("SystemMachineConditionsNotifier");
    const auto observation = std::move(observation_);
    if (!observation)
        return;
    [NSNotificationCenter.defaultCenter removeObserver:observation->screenToken];
    if (!observation->powerSource)
        return;
    for (const CFRunLoopMode mode : modes())
        CFRunLoopRemoveSource(CFRunLoopGetMain(), observation->powerSource.get(), mode);
}

} // namespace wakeloft
