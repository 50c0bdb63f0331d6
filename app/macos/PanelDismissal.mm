#include "PanelDismissal.h"

#include "support/MainThread.h"

#include <utility>

namespace wakeloft {

PanelDismissal::PanelDismissal(Events events) : events_(std::move(events)) {}

PanelDismissal::~PanelDismissal() {
    stop();
}

// No cycle: the blocks hold copies of the callbacks and not this object, and `stop` takes the blocks off.
void PanelDismissal::start() {
    stop();
    const Events events = events_;
    const auto dismiss = [events] {
        requireMainThread("PanelDismissal");
        const auto dismissed = events.dismissed; // it takes off what it was called by
        dismissed();
    };
    constexpr NSEventMask presses =
        NSEventMaskLeftMouseDown | NSEventMaskRightMouseDown | NSEventMaskOtherMouseDown;
    pressMonitor_ = [NSEvent addGlobalMonitorForEventsMatchingMask:presses
                                                           handler:^(NSEvent*) {
                                                               dismiss();
                                                           }];
    if (pressMonitor_ == nil)
        NSLog(@"Wakeloft: presses outside of the panel cannot be followed.");
    NSNotificationCenter* centre = NSNotificationCenter.defaultCenter;
    keyToken_ = [centre addObserverForName:NSWindowDidBecomeKeyNotification
                                    object:nil
                                     queue:nil
                                usingBlock:^(NSNotification* notification) {
                                    if (!events.isPartOfPanel((NSWindow*)notification.object))
                                        dismiss();
                                }];
    resignToken_ = [centre addObserverForName:NSApplicationDidResignActiveNotification
                                       object:nil
                                        queue:nil
                                   usingBlock:^(NSNotification*) {
                                       dismiss();
                                   }];
}

void PanelDismissal::stop() {
    requireMainThread("PanelDismissal");
    if (id monitor = std::exchange(pressMonitor_, nil))
        [NSEvent removeMonitor:monitor];
    for (id<NSObject> token : {std::exchange(keyToken_, nil), std::exchange(resignToken_, nil)})
        if (token != nil)
            [NSNotificationCenter.defaultCenter removeObserver:token];
}

} // namespace wakeloft
