#pragma once
#include <CoreFoundation/CoreFoundation.h>
#include <dispatch/dispatch.h>
CF_ASSUME_NONNULL_BEGIN
typedef struct __FSEventStream* FSEventStreamRef;
typedef const struct __FSEventStream* ConstFSEventStreamRef;
typedef UInt32 FSEventStreamCreateFlags;
typedef UInt32 FSEventStreamEventFlags;
typedef UInt64 FSEventStreamEventId;
enum : FSEventStreamCreateFlags {
    kFSEventStreamCreateFlagNoDefer = 0x2,
    kFSEventStreamCreateFlagWatchRoot = 0x4,
    kFSEventStreamCreateFlagFileEvents = 0x10
};
enum : FSEventStreamEventId { kFSEventStreamEventIdSinceNow = 0xFFFFFFFFFFFFFFFFull };
struct FSEventStreamContext {
    CFIndex version;
    void* _Nullable info;
    const void* _Nonnull (*_Nullable retain)(const void* _Nonnull info);
    void (*_Nullable release)(const void* _Nonnull info);
    CFStringRef _Nonnull (*_Nullable copyDescription)(const void* _Nonnull info);
};
typedef struct FSEventStreamContext FSEventStreamContext;
typedef void (*FSEventStreamCallback)(ConstFSEventStreamRef stream, void* _Nullable info, size_t count, void* paths,
    const FSEventStreamEventFlags* _Nonnull flags, const FSEventStreamEventId* _Nonnull ids);
SURFACE_EXTERN FSEventStreamRef _Nullable FSEventStreamCreate(CFAllocatorRef _Nullable allocator,
    FSEventStreamCallback callback, FSEventStreamContext* _Nullable context, CFArrayRef paths,
    FSEventStreamEventId sinceWhen, CFTimeInterval latency, FSEventStreamCreateFlags flags) SURFACE_SINCE(10.5);
SURFACE_EXTERN void FSEventStreamSetDispatchQueue(FSEventStreamRef stream, dispatch_queue_t _Nullable queue)
    SURFACE_SINCE(10.6);
SURFACE_EXTERN Boolean FSEventStreamStart(FSEventStreamRef stream) SURFACE_SINCE(10.5);
SURFACE_EXTERN void FSEventStreamStop(FSEventStreamRef stream) SURFACE_SINCE(10.5);
SURFACE_EXTERN void FSEventStreamInvalidate(FSEventStreamRef stream) SURFACE_SINCE(10.5);
SURFACE_EXTERN void FSEventStreamRelease(FSEventStreamRef stream) SURFACE_SINCE(10.5);
CF_ASSUME_NONNULL_END
