#pragma once
#include <CoreFoundation/CoreFoundation.h>
#include <CoreGraphics/CGGeometry.h>
CF_ASSUME_NONNULL_BEGIN
typedef struct CGContext* CGContextRef;
enum CGLineCap : int32_t { kCGLineCapButt, kCGLineCapRound, kCGLineCapSquare };
enum CGLineJoin : int32_t { kCGLineJoinMiter, kCGLineJoinRound, kCGLineJoinBevel };
enum CGBlendMode : int32_t { kCGBlendModeNormal = 0, kCGBlendModeClear = 16 };
typedef enum CGLineCap CGLineCap;
typedef enum CGLineJoin CGLineJoin;
typedef enum CGBlendMode CGBlendMode;

SURFACE_EXTERN void CGContextSaveGState(CGContextRef _Nullable context);
SURFACE_EXTERN void CGContextRestoreGState(CGContextRef _Nullable context);
SURFACE_EXTERN void CGContextBeginTransparencyLayer(CGContextRef _Nullable context,
    CFDictionaryRef _Nullable auxiliaryInfo) SURFACE_SINCE(10.3);
SURFACE_EXTERN void CGContextEndTransparencyLayer(CGContextRef _Nullable context) SURFACE_SINCE(10.3);
SURFACE_EXTERN CGAffineTransform CGContextGetUserSpaceToDeviceSpaceTransform(CGContextRef _Nullable context)
    SURFACE_SINCE(10.4);
SURFACE_EXTERN void CGContextSetBlendMode(CGContextRef _Nullable context, CGBlendMode mode) SURFACE_SINCE(10.4);
SURFACE_EXTERN void CGContextSetGrayFillColor(CGContextRef _Nullable context, CGFloat gray, CGFloat alpha);
SURFACE_EXTERN void CGContextSetGrayStrokeColor(CGContextRef _Nullable context, CGFloat gray, CGFloat alpha);
SURFACE_EXTERN void CGContextSetLineWidth(CGContextRef _Nullable context, CGFloat width);
SURFACE_EXTERN void CGContextSetLineCap(CGContextRef _Nullable context, CGLineCap cap);
SURFACE_EXTERN void CGContextSetLineJoin(CGContextRef _Nullable context, CGLineJoin join);

SURFACE_EXTERN void CGContextMoveToPoint(CGContextRef _Nullable context, CGFloat x, CGFloat y);
SURFACE_EXTERN void CGContextAddLineToPoint(CGContextRef _Nullable context, CGFloat x, CGFloat y);
SURFACE_EXTERN void CGContextAddCurveToPoint(CGContextRef _Nullable context, CGFloat control1X, CGFloat control1Y,
    CGFloat control2X, CGFloat control2Y, CGFloat x, CGFloat y);
SURFACE_EXTERN void CGContextClosePath(CGContextRef _Nullable context);
SURFACE_EXTERN void CGContextAddEllipseInRect(CGContextRef _Nullable context, CGRect box) SURFACE_SINCE(10.4);
SURFACE_EXTERN void CGContextStrokePath(CGContextRef _Nullable context);
SURFACE_EXTERN void CGContextFillPath(CGContextRef _Nullable context);
CF_ASSUME_NONNULL_END
