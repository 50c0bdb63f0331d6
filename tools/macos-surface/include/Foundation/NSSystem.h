// The process, its threads, loops, notifications and preferences.
#pragma once
#include <Foundation/NSCollections.h>
NS_ASSUME_NONNULL_BEGIN
SURFACE_EXTERN void NSLog(NSString *format, ...) NS_FORMAT_FUNCTION(1, 2);

typedef struct {
    NSInteger majorVersion, minorVersion, patchVersion;
} NSOperatingSystemVersion;
@interface NSProcessInfo : NSObject
@property (readonly) NSOperatingSystemVersion operatingSystemVersion SURFACE_SINCE(10.10);
@property (class, readonly, strong) NSProcessInfo *processInfo;
@property (readonly) NSTimeInterval systemUptime SURFACE_SINCE(10.6);
@end
typedef NS_ENUM(NSUInteger, NSSearchPathDirectory) { NSApplicationDirectory = 1 };
typedef NS_OPTIONS(NSUInteger, NSSearchPathDomainMask) { NSUserDomainMask = 1, NSLocalDomainMask = 2 };
@interface NSFileManager : NSObject
@property (class, readonly, strong) NSFileManager *defaultManager;
- (NSArray<NSURL *> *)URLsForDirectory:(NSSearchPathDirectory)directory
                             inDomains:(NSSearchPathDomainMask)domains SURFACE_SINCE(10.6);
@end
@interface NSThread : NSObject
@property (class, readonly) BOOL isMainThread;
@end

typedef NSString *NSRunLoopMode;
SURFACE_EXTERN NSRunLoopMode const NSRunLoopCommonModes;
SURFACE_EXTERN NSRunLoopMode const NSDefaultRunLoopMode;
@interface NSTimer : NSObject
+ (NSTimer *)timerWithTimeInterval:(NSTimeInterval)interval
                           repeats:(BOOL)repeats
                             block:(void (^)(NSTimer *timer))block SURFACE_SINCE(10.12);
- (void)invalidate;
@end
@interface NSRunLoop : NSObject
@property (class, readonly, strong) NSRunLoop *mainRunLoop;
- (void)addTimer:(NSTimer *)timer forMode:(NSRunLoopMode)mode;
- (void)performInModes:(NSArray<NSRunLoopMode> *)modes block:(void (^)(void))block SURFACE_SINCE(10.12);
@end

typedef NSString *NSNotificationName;
SURFACE_EXTERN NSNotificationName const NSSystemClockDidChangeNotification SURFACE_SINCE(10.6);
@interface NSOperationQueue : NSObject
@property (class, readonly, strong) NSOperationQueue *mainQueue SURFACE_SINCE(10.6);
@end
@interface NSNotification : NSObject
@property (nullable, readonly, strong) id object;
@end
@interface NSNotificationCenter : NSObject
@property (class, readonly, strong) NSNotificationCenter *defaultCenter;
- (id<NSObject>)addObserverForName:(nullable NSNotificationName)name
                            object:(nullable id)object
                             queue:(nullable NSOperationQueue *)queue
                        usingBlock:(void (^)(NSNotification *notification))block SURFACE_SINCE(10.6);
- (void)removeObserver:(id)observer;
@end

@interface NSUserDefaults : NSObject
@property (class, readonly, strong) NSUserDefaults *standardUserDefaults;
- (nullable id)objectForKey:(NSString *)key;
- (void)setObject:(nullable id)value forKey:(NSString *)key;
- (void)removeObjectForKey:(NSString *)key;
@end
NS_ASSUME_NONNULL_END
