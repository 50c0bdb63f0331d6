#include "SystemTimeZone.h"

#import <Foundation/Foundation.h>

namespace wakeloft {

Seconds SystemTimeZone::secondsFromUtcAt(Date date) const {
    [NSTimeZone resetSystemTimeZone]; // it may have been changed while the program runs
    NSDate* moment = [NSDate dateWithTimeIntervalSince1970:date.secondsSince1970];
    return static_cast<Seconds>([NSTimeZone.systemTimeZone secondsFromGMTForDate:moment]);
}

} // namespace wakeloft
