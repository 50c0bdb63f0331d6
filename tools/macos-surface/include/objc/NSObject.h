#pragma once
#include <SurfaceBase.h>

#define NS_UNAVAILABLE __attribute__((unavailable))
#define NS_DESIGNATED_INITIALIZER __attribute__((objc_designated_initializer))
#define NS_RETURNS_INNER_POINTER __attribute__((objc_returns_inner_pointer))
#define NS_FORMAT_FUNCTION(text, first) __attribute__((format(__NSString__, text, first)))
#define NS_NOESCAPE __attribute__((noescape))
#define NS_ENUM(type, name) enum name : type name; enum __attribute__((enum_extensibility(open))) name : type
#define NS_OPTIONS(type, name) type name; enum __attribute__((flag_enum, enum_extensibility(open))) : name // as in C++

typedef bool BOOL; // on Apple silicon
#define YES __objc_yes
#define NO __objc_no
#define nil nullptr
typedef long NSInteger;
typedef unsigned long NSUInteger;

NS_ASSUME_NONNULL_BEGIN
@class NSCoder, NSString;
@protocol NSObject
- (BOOL)isEqual:(id)object;
- (instancetype)self;
- (BOOL)isKindOfClass:(Class)someClass;
- (BOOL)conformsToProtocol:(Protocol *)protocol;
- (BOOL)respondsToSelector:(SEL)selector;
@property (readonly, copy) NSString *description;
@end

__attribute__((objc_root_class))
@interface NSObject <NSObject> {
    Class isa;
}
- (instancetype)init NS_DESIGNATED_INITIALIZER;
+ (instancetype)new;
+ (instancetype)alloc;
- (void)dealloc;
- (id)copy;
- (id)mutableCopy;
+ (Class)class;
@end
NS_ASSUME_NONNULL_END
