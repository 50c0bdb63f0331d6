#include "CoreGraphicsGlyphCanvas.h"

#include <cmath>

namespace wakeloft {

CoreGraphicsGlyphCanvas::CoreGraphicsGlyphCanvas(CGContextRef context) : context_(context) {
    CGContextSaveGState(context_);
    CGContextBeginTransparencyLayer(context_, nullptr); // so that `clear` makes no hole in what lies below
    CGContextSetGrayFillColor(context_, 0, 1);
    CGContextSetGrayStrokeColor(context_, 0, 1);
    CGContextSetLineCap(context_, kCGLineCapRound);
    CGContextSetLineJoin(context_, kCGLineJoinRound);
}

CoreGraphicsGlyphCanvas::~CoreGraphicsGlyphCanvas() {
    CGContextEndTransparencyLayer(context_);
    CGContextRestoreGState(context_);
}

void CoreGraphicsGlyphCanvas::moveTo(GlyphPoint to) {
    CGContextMoveToPoint(context_, to.x, to.y);
}

void CoreGraphicsGlyphCanvas::lineTo(GlyphPoint to) {
    CGContextAddLineToPoint(context_, to.x, to.y);
}

void CoreGraphicsGlyphCanvas::curveTo(GlyphPoint control1, GlyphPoint control2, GlyphPoint to) {
    CGContextAddCurveToPoint(context_, control1.x, control1.y, control2.x, control2.y, to.x, to.y);
}

void CoreGraphicsGlyphCanvas::closePath() {
    CGContextClosePath(context_);
}

void CoreGraphicsGlyphCanvas::ellipse(GlyphBox box) {
    CGContextAddEllipseInRect(context_, CGRectMake(box.x, box.y, box.width, box.height));
}

void CoreGraphicsGlyphCanvas::stroke(double width) {
    CGContextSetLineWidth(context_, width);
    CGContextStrokePath(context_);
}

void CoreGraphicsGlyphCanvas::fill() {
    CGContextFillPath(context_);
}

void CoreGraphicsGlyphCanvas::clear() {
    CGContextSetBlendMode(context_, kCGBlendModeClear);
    CGContextFillPath(context_);
    CGContextSetBlendMode(context_, kCGBlendModeNormal);
}

double deviceScale(CGContextRef context) {
    // The length of a point along x, whichever way the context is turned or mirrored.
    const auto transform = CGContextGetUserSpaceToDeviceSpaceTransform(context);
    const double scale = std::hypot(transform.a, transform.b);
    return scale > 0 ? scale : 1;
}

} // namespace wakeloft
