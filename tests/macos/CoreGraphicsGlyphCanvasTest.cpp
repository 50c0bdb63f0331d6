#include "CoreGraphicsGlyphCanvas.h"

#include <gtest/gtest.h>

#include <string>

// A context that is the list of what was done to it, without the places.
struct CGContext {
    std::string done;
    CGAffineTransform toDevice{0, 3, -3, 0, 10, 10}; // turned
};

void CGContextSaveGState(CGContextRef context) {
    context->done += "save ";
}
void CGContextRestoreGState(CGContextRef context) {
    context->done += "restore ";
}
void CGContextBeginTransparencyLayer(CGContextRef context, CFDictionaryRef) {
    context->done += "layer ";
}
void CGContextEndTransparencyLayer(CGContextRef context) {
    context->done += "end of layer ";
}
CGAffineTransform CGContextGetUserSpaceToDeviceSpaceTransform(CGContextRef context) {
    return context->toDevice;
}
void CGContextSetBlendMode(CGContextRef context, CGBlendMode mode) {
    context->done += mode == kCGBlendModeClear ? "clearing " : "drawing ";
}
void CGContextSetGrayFillColor(CGContextRef, CGFloat, CGFloat) {}
void CGContextSetGrayStrokeColor(CGContextRef, CGFloat, CGFloat) {}
void CGContextSetLineWidth(CGContextRef, CGFloat) {}
void CGContextSetLineCap(CGContextRef, CGLineCap) {}
void CGContextSetLineJoin(CGContextRef, CGLineJoin) {}
void CGContextMoveToPoint(CGContextRef, CGFloat, CGFloat) {}
void CGContextAddLineToPoint(CGContextRef, CGFloat, CGFloat) {}
void CGContextAddCurveToPoint(CGContextRef, CGFloat, CGFloat, CGFloat, CGFloat, CGFloat, CGFloat) {}
void CGContextClosePath(CGContextRef) {}
void CGContextAddEllipseInRect(CGContextRef, CGRect) {}
void CGContextStrokePath(CGContextRef context) {
    context->done += "stroke ";
}
void CGContextFillPath(CGContextRef context) {
    context->done += "fill ";
}

namespace wakeloft {
namespace {

TEST(CoreGraphicsGlyphCanvas, DrawsInALayerOfItsOwnSoThatNothingBelowIsCleared) {
    CGContext context;
    {
        CoreGraphicsGlyphCanvas canvas(&context);
        canvas.stroke(1.5);
        canvas.clear();
        canvas.fill();
    }
    EXPECT_EQ(context.done, "save layer stroke clearing fill drawing fill end of layer restore ");
    EXPECT_EQ(deviceScale(&context), 3);
    context.toDevice = {};
    EXPECT_EQ(deviceScale(&context), 1);
}

} // namespace
} // namespace wakeloft
