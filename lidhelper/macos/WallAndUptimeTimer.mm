#include "WallAndUptimeTimer.h"

#include "DispatchTime.h"
#include "support/MainThread.h"

#import <Foundation/Foundation.h>

#include <utility>

namespace wakeloft {

struct WallAndUptimeTimer::Pending {
    std::function<void()> action;
    dispatch_source_t wall;
    dispatch_source_t uptime;
};

namespace {

dispatch_source_t startedTimer(dispatch_time_t when, dispatch_block_t fired) {
    dispatch_source_t source =
        dispatch_source_create(DISPATCH_SOURCE_TYPE_TIMER, 0, 0, dispatch_get_main_queue());
    dispatch_source_set_timer(source, when, DISPATCH_TIME_FOREVER, NSEC_PER_MSEC);
    dispatch_source_set_event_handler(source, fired);
    dispatch_activate(source);
    return source;
}

} // namespace

WallAndUptimeTimer::WallAndUptimeTimer() = default;

WallAndUptimeTimer::~WallAndUptimeTimer() {
    cancel();
}

void WallAndUptimeTimer::arm(Seconds seconds, std::function<void()> action) {
    cancel();
    pending_ = std::make_shared<Pending>();
    pending_->action = std::move(action);
    // No cycle: the sources hold the block, and the block holds what holds them weakly. A source that fired
    // just before it was cancelled finds that gone, and with it possibly this timer.
    const std::weak_ptr<Pending> armed = pending_;
    const dispatch_block_t fired = ^{
        if (!armed.expired())
            fire();
    };
    const auto delay = dispatchNanoseconds(seconds);
    pending_->wall = startedTimer(dispatch_walltime(nullptr, delay), fired);
    pending_->uptime = startedTimer(dispatch_time(DISPATCH_TIME_NOW, delay), fired);
}

void WallAndUptimeTimer::cancel() {
    requireMainThread("WallAndUptimeTimer");
    if (const auto pending = std::exchange(pending_, nullptr)) {
        dispatch_source_cancel(pending->wall);
        dispatch_source_cancel(pending->uptime);
    }
}

void WallAndUptimeTimer::fire() {
    const auto run = std::move(pending_->action);
    cancel();
    @autoreleasepool {
        run(); // it may arm again
    }
}

} // namespace wakeloft
