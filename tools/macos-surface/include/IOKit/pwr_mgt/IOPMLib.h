#pragma once
#include <CoreFoundation/CoreFoundation.h>
#include <IOKit/IOReturn.h>
CF_ASSUME_NONNULL_BEGIN
typedef uint32_t IOPMAssertionID;
typedef uint32_t IOPMAssertionLevel;
enum { kIOPMNullAssertionID = 0 };
enum { kIOPMAssertionLevelOff = 0, kIOPMAssertionLevelOn = 255 };
#define kIOPMAssertionTypePreventUserIdleSystemSleep CFSTR("PreventUserIdleSystemSleep")
SURFACE_EXTERN IOReturn IOPMAssertionCreateWithName(CFStringRef type, IOPMAssertionLevel level, CFStringRef name,
    IOPMAssertionID* assertion) SURFACE_SINCE(10.6);
SURFACE_EXTERN IOReturn IOPMAssertionRelease(IOPMAssertionID assertion);
CF_ASSUME_NONNULL_END
