#include "CFMainRunLoop.h"

#include "DispatchTime.h"
#include "support/MainThread.h"

#import <Foundation/Foundation.h>

namespace wakeloft {

void CFMainRunLoop::perform(std::function<void()> work) {
    CFRunLoopPerformBlock(CFRunLoopGetMain(), kCFRunLoopCommonModes, ^{
        requireMainThread("work for the main run loop");
        @autoreleasepool {
            work();
        }
    });
    CFRunLoopWakeUp(CFRunLoopGetMain());
}

void CFMainRunLoop::performAfter(Seconds seconds, std::function<void()> work) {
    const auto when = dispatch_time(DISPATCH_TIME_NOW, dispatchNanoseconds(seconds));
    dispatch_after(when, dispatch_get_global_queue(QOS_CLASS_USER_INITIATED, 0), ^{
        perform(work); // no state of this object: the loop is the process's
    });
}

} // namespace wakeloft
