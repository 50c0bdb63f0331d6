#include "TimerDeadlineScheduler.h"

#include "support/MainThread.h"

#import <AppKit/AppKit.h>

namespace wakeloft {

struct TimerDeadlineScheduler::Timer {
    NSTimer* timer;
};

TimerDeadlineScheduler::TimerDeadlineScheduler(const DateProvider& dates) : dates_(dates) {}

TimerDeadlineScheduler::~TimerDeadlineScheduler() {
    cancel();
}

void TimerDeadlineScheduler::scheduleAt(Date date, std::function<void()> action) {
    cancel();
    // No cycle: the run loop holds the timer, the timer its block, and the block only the action.
    NSTimer* timer = [NSTimer timerWithTimeInterval:timerInterval(date, dates_.now())
                                            repeats:NO
                                              block:^(NSTimer*) {
                                                  requireMainThread("a deadline's action");
                                                  const auto run = action; // it may schedule again
                                                  run();
                                              }];
    [NSRunLoop.mainRunLoop addTimer:timer forMode:NSRunLoopCommonModes];
    [NSRunLoop.mainRunLoop addTimer:timer forMode:NSEventTrackingRunLoopMode];
    timer_ = std::make_unique<Timer>(timer);
}

void TimerDeadlineScheduler::cancel() {
    requireMainThread("TimerDeadlineScheduler");
    if (timer_)
        [timer_->timer invalidate];
    timer_.reset();
}

} // namespace wakeloft
