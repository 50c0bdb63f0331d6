// Texts, numbers, dates, data, errors.
#pragma once
#include <CoreFoundation/CoreFoundation.h>
#include <objc/NSObject.h>
NS_ASSUME_NONNULL_BEGIN
static inline id _Nullable CFBridgingRelease(CFTypeRef _Nullable CF_CONSUMED object) {
    return (__bridge_transfer id)object;
}
typedef double NSTimeInterval;
typedef unsigned short unichar;
typedef NSUInteger NSStringEncoding;
enum : NSStringEncoding { NSUTF8StringEncoding = 4 };
@protocol NSCopying
@end

@interface NSString : NSObject <NSCopying>
@property (readonly) NSUInteger length;
- (unichar)characterAtIndex:(NSUInteger)index;
- (NSString *)substringFromIndex:(NSUInteger)index;
- (BOOL)hasPrefix:(NSString *)prefix;
- (NSString *)stringByAppendingString:(NSString *)other;
@end

@interface NSNumber : NSObject <NSCopying>
@property (readonly) double doubleValue;
@property (readonly) BOOL boolValue;
+ (NSNumber *)numberWithBool:(BOOL)value;
+ (NSNumber *)numberWithInt:(int)value;
+ (NSNumber *)numberWithDouble:(double)value;
@end

@interface NSDate : NSObject <NSCopying>
@property (readonly) NSTimeInterval timeIntervalSince1970;
+ (instancetype)date;
+ (instancetype)dateWithTimeIntervalSince1970:(NSTimeInterval)seconds;
@end

@interface NSData : NSObject <NSCopying>
+ (instancetype)dataWithBytes:(nullable const void *)bytes length:(NSUInteger)length;
@end

@interface NSURL : NSObject <NSCopying>
+ (nullable instancetype)URLWithString:(NSString *)text;
@property (nullable, readonly, copy) NSString *path;
@property (nullable, readonly, copy) NSURL *URLByStandardizingPath SURFACE_SINCE(10.6);
@property (nullable, readonly, copy) NSURL *URLByResolvingSymlinksInPath SURFACE_SINCE(10.6);
@end

@interface NSError : NSObject <NSCopying>
@property (readonly, copy) NSString *domain;
@property (readonly) NSInteger code;
@property (readonly, copy) NSString *localizedDescription;
@end

__attribute__((objc_exception))
@interface NSException : NSObject <NSCopying>
@property (nullable, readonly, copy) NSString *reason;
@property (readonly, copy) NSString *name;
@end
NS_ASSUME_NONNULL_END
