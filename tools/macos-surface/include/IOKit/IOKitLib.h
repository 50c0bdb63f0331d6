#pragma once
#include <CoreFoundation/CoreFoundation.h>
#include <IOKit/IOReturn.h>
CF_ASSUME_NONNULL_BEGIN
typedef unsigned int mach_port_t;
typedef mach_port_t io_object_t;
typedef io_object_t io_service_t;
typedef io_object_t io_registry_entry_t;
typedef UInt32 IOOptionBits;
#define IO_OBJECT_NULL ((io_object_t)0)
SURFACE_EXTERN const mach_port_t kIOMainPortDefault SURFACE_SINCE(12.0);
SURFACE_EXTERN CFMutableDictionaryRef _Nullable IOServiceMatching(const char* name) CF_RETURNS_RETAINED;
SURFACE_EXTERN io_service_t IOServiceGetMatchingService(mach_port_t mainPort, CFDictionaryRef _Nullable matching CF_CONSUMED);
SURFACE_EXTERN CFTypeRef _Nullable IORegistryEntryCreateCFProperty(io_registry_entry_t entry, CFStringRef key,
    CFAllocatorRef _Nullable allocator, IOOptionBits options) CF_RETURNS_RETAINED;
SURFACE_EXTERN kern_return_t IOObjectRelease(io_object_t object);
CF_ASSUME_NONNULL_END
