#pragma once
#include <CoreFoundation/CoreFoundation.h>
CF_ASSUME_NONNULL_BEGIN
typedef void (*IOPowerSourceCallbackType)(void* _Nullable context);
SURFACE_EXTERN CFTypeRef _Nullable IOPSCopyPowerSourcesInfo(void) CF_RETURNS_RETAINED;
SURFACE_EXTERN CFStringRef _Nullable IOPSGetProvidingPowerSourceType(CFTypeRef _Nullable information);
SURFACE_EXTERN CFRunLoopSourceRef _Nullable IOPSNotificationCreateRunLoopSource(IOPowerSourceCallbackType callback,
    void* _Nullable context) CF_RETURNS_RETAINED;
CF_ASSUME_NONNULL_END
