#pragma once
#include <CoreGraphics/CGContext.h>
NS_ASSUME_NONNULL_BEGIN
typedef uint32_t CGDirectDisplayID;
typedef int boolean_t;
enum CGError : int32_t { kCGErrorSuccess = 0, kCGErrorFailure = 1000 };
typedef enum CGError CGError;
SURFACE_EXTERN CGError CGGetOnlineDisplayList(uint32_t capacity, CGDirectDisplayID* _Nullable displays,
    uint32_t* _Nullable count);
SURFACE_EXTERN boolean_t CGDisplayIsBuiltin(CGDirectDisplayID display);
NS_ASSUME_NONNULL_END
