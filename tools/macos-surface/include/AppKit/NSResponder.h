// Events, what answers to them, and what assistive programs are told.
#pragma once
#include <Foundation/Foundation.h>
NS_ASSUME_NONNULL_BEGIN
typedef NSString *NSAccessibilityRole;
SURFACE_EXTERN NSAccessibilityRole const NSAccessibilityMenuButtonRole;
SURFACE_EXTERN NSAccessibilityRole const NSAccessibilityStaticTextRole;
@protocol NSAccessibility <NSObject>
@required
@property (getter=isAccessibilityElement) BOOL accessibilityElement;
@property (nullable, copy) NSString *accessibilityLabel;
@property (nullable, copy) NSAccessibilityRole accessibilityRole;
@property (nullable, copy) NSArray *accessibilityChildren;
@end

typedef NS_OPTIONS(unsigned long long, NSEventMask) {
    NSEventMaskLeftMouseDown = 1ULL << 1,
    NSEventMaskRightMouseDown = 1ULL << 3,
    NSEventMaskOtherMouseDown = 1ULL << 25
};
typedef NS_OPTIONS(NSUInteger, NSEventModifierFlags) {
    NSEventModifierFlagShift = 1 << 17,
    NSEventModifierFlagControl = 1 << 18,
    NSEventModifierFlagOption = 1 << 19,
    NSEventModifierFlagCommand = 1 << 20
};
@interface NSEvent : NSObject <NSCopying>
@property (readonly) NSEventModifierFlags modifierFlags;
@property (nullable, readonly, copy) NSString *characters;
+ (nullable id)addGlobalMonitorForEventsMatchingMask:(NSEventMask)mask
                                             handler:(void (^)(NSEvent *event))handler SURFACE_SINCE(10.6);
+ (void)removeMonitor:(id)monitor SURFACE_SINCE(10.6);
@end

@interface NSResponder : NSObject
- (instancetype)init NS_DESIGNATED_INITIALIZER;
- (BOOL)performKeyEquivalent:(NSEvent *)event;
@end
NS_ASSUME_NONNULL_END
