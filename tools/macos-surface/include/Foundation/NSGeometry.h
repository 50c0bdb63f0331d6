#pragma once
#include <CoreGraphics/CGGeometry.h>
#include <objc/NSObject.h>
NS_ASSUME_NONNULL_BEGIN
typedef CGPoint NSPoint;
typedef CGSize NSSize;
typedef CGRect NSRect;
typedef NS_ENUM(NSUInteger, NSRectEdge) {
    NSRectEdgeMinX = 0,
    NSRectEdgeMinY = 1,
    NSRectEdgeMaxX = 2,
    NSRectEdgeMaxY = 3
};
typedef struct {
    CGFloat top, left, bottom, right;
} NSEdgeInsets;
static inline NSPoint NSMakePoint(CGFloat x, CGFloat y) { return NSPoint{x, y}; }
static inline NSSize NSMakeSize(CGFloat width, CGFloat height) { return NSSize{width, height}; }
static inline NSEdgeInsets NSEdgeInsetsMake(CGFloat top, CGFloat left, CGFloat bottom, CGFloat right) {
    return NSEdgeInsets{top, left, bottom, right};
}
SURFACE_EXTERN const NSRect NSZeroRect;
NS_ASSUME_NONNULL_END
