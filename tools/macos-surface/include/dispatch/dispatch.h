#pragma once
#include <SurfaceBase.h>
#ifdef __OBJC__
#include <objc/NSObject.h>
#define SURFACE_DISPATCH_TYPE(name) \
    @protocol OS_##name <OS_dispatch_object> \
    @end \
    typedef NSObject<OS_##name>* name##_t
@protocol OS_dispatch_object <NSObject>
@end
typedef NSObject<OS_dispatch_object>* dispatch_object_t;
#else
#define SURFACE_DISPATCH_TYPE(name) typedef struct name##_s* name##_t
typedef void* dispatch_object_t;
#endif
SURFACE_DISPATCH_TYPE(dispatch_queue);
SURFACE_DISPATCH_TYPE(dispatch_source);

NS_ASSUME_NONNULL_BEGIN
#define NSEC_PER_SEC 1000000000ull
#define NSEC_PER_MSEC 1000000ull
typedef uint64_t dispatch_time_t;
#define DISPATCH_TIME_NOW (0ull)
#define DISPATCH_TIME_FOREVER (~0ull)
typedef struct dispatch_source_type_s dispatch_source_type_s;
typedef const struct dispatch_source_type_s* dispatch_source_type_t;
SURFACE_EXTERN const struct dispatch_source_type_s _dispatch_source_type_timer;
SURFACE_EXTERN const struct dispatch_source_type_s _dispatch_source_type_signal;
#define DISPATCH_SOURCE_TYPE_TIMER (&_dispatch_source_type_timer)
#define DISPATCH_SOURCE_TYPE_SIGNAL (&_dispatch_source_type_signal)
enum qos_class_t : unsigned int { QOS_CLASS_USER_INITIATED = 0x19, QOS_CLASS_DEFAULT = 0x15 };
typedef enum qos_class_t qos_class_t;

SURFACE_EXTERN dispatch_time_t dispatch_time(dispatch_time_t when, int64_t nanoseconds);
SURFACE_EXTERN dispatch_time_t dispatch_walltime(const struct timespec* _Nullable when, int64_t nanoseconds);
SURFACE_EXTERN dispatch_queue_t dispatch_get_global_queue(intptr_t identifier, uintptr_t flags);
#ifdef __OBJC__
struct dispatch_queue_s;
SURFACE_EXTERN struct dispatch_queue_s _dispatch_main_q;
static inline dispatch_queue_t dispatch_get_main_queue(void) {
    return (__bridge dispatch_queue_t)(void*)&_dispatch_main_q;
}
#endif
#ifdef __BLOCKS__
typedef void (^dispatch_block_t)(void);
SURFACE_EXTERN void dispatch_async(dispatch_queue_t queue, dispatch_block_t block);
SURFACE_EXTERN void dispatch_after(dispatch_time_t when, dispatch_queue_t queue, dispatch_block_t block);
SURFACE_EXTERN dispatch_source_t dispatch_source_create(dispatch_source_type_t type, uintptr_t handle, uintptr_t mask,
    dispatch_queue_t _Nullable queue) CF_RETURNS_RETAINED;
SURFACE_EXTERN void dispatch_source_set_event_handler(dispatch_source_t source, dispatch_block_t _Nullable handler);
SURFACE_EXTERN void dispatch_source_set_timer(dispatch_source_t source, dispatch_time_t start, uint64_t interval,
    uint64_t leeway);
SURFACE_EXTERN void dispatch_source_cancel(dispatch_source_t source);
SURFACE_EXTERN void dispatch_activate(dispatch_object_t object) SURFACE_SINCE(10.12);
#endif
NS_ASSUME_NONNULL_END
