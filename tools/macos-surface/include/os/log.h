#pragma once
#include <objc/NSObject.h>
@protocol OS_os_log <NSObject>
@end
typedef NSObject<OS_os_log>* os_log_t;
enum os_log_type_t : uint8_t {
    OS_LOG_TYPE_DEFAULT = 0x00,
    OS_LOG_TYPE_INFO = 0x01,
    OS_LOG_TYPE_DEBUG = 0x02,
    OS_LOG_TYPE_ERROR = 0x10,
    OS_LOG_TYPE_FAULT = 0x11
};
typedef enum os_log_type_t os_log_type_t;
SURFACE_EXTERN os_log_t _Nonnull os_log_create(const char* _Nonnull subsystem, const char* _Nonnull category)
    SURFACE_SINCE(10.12);
SURFACE_EXTERN bool os_log_type_enabled(os_log_t _Nonnull log, os_log_type_t type) SURFACE_SINCE(10.12);
SURFACE_EXTERN void* __dso_handle;
SURFACE_EXTERN void _os_log_impl(void* _Nonnull image, os_log_t _Nonnull log, os_log_type_t type,
    const char* _Nonnull format, uint8_t* _Nonnull buffer, uint32_t size) SURFACE_SINCE(10.12);
// The compiler packs the arguments, and checks them against the format as it does for the SDK's macro.
#define os_log_with_type(log, type, format, ...) __extension__({ \
    os_log_t surfaceLog = (log); \
    const os_log_type_t surfaceType = (type); \
    if (os_log_type_enabled(surfaceLog, surfaceType)) { \
        __attribute__((section("__TEXT,__oslogstring,cstring_literals"))) static const char surfaceFormat[] = format; \
        uint8_t surfaceBuffer[__builtin_os_log_format_buffer_size(format, ##__VA_ARGS__)]; \
        _os_log_impl(&__dso_handle, surfaceLog, surfaceType, surfaceFormat, \
            (uint8_t*)__builtin_os_log_format(surfaceBuffer, format, ##__VA_ARGS__), (uint32_t)sizeof surfaceBuffer); \
    } })
