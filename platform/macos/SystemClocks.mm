#include "SystemClocks.h"

#import <Foundation/Foundation.h>

#include <ctime>

namespace wakeloft {

Date SystemDateProvider::now() const {
    return {[NSDate date].timeIntervalSince1970};
}

Seconds SystemUptimeProvider::uptime() const {
    return NSProcessInfo.processInfo.systemUptime;
}

Seconds SystemContinuousTimeProvider::continuousTime() const {
    return static_cast<Seconds>(clock_gettime_nsec_np(CLOCK_MONOTONIC)) / 1e9;
}

} // namespace wakeloft
