#include "CoreGraphicsGlyphCanvas.h"

#include <gtest/gtest.h>

#include <sstream>

// A context that is the list of what was done to it.
struct CGContext {
    std::ostringstream done;
    CGAffineTransform toDevice{0, 3, -3, 0, 10, 10}; // turned

    template <class... Numbers>
    void add(const char* what, Numbers... numbers) {
        done << what;
        ((done << ' ' << numbers), ...);
        done << '\n';
    }
};

void CGContextSaveGState(CGContextRef context) {
    context->add("save");
}
void CGContextRestoreGState(CGContextRef context) {
    context->add("restore");
}
void CGContextBeginTransparencyLayer(CGContextRef context, CFDictionaryRef) {
    context->add("layer");
}
void CGContextEndTransparencyLayer(CGContextRef context) {
    context->add("end of layer");
}
CGAffineTransform CGContextGetUserSpaceToDeviceSpaceTransform(CGContextRef context) {
    return context->toDevice;
}
void CGContextSetBlendMode(CGContextRef context, CGBlendMode mode) {
    context->add(mode == kCGBlendModeClear ? "clearing" : "drawing");
}
void CGContextSetGrayFillColor(CGContextRef, CGFloat, CGFloat) {}
void CGContextSetGrayStrokeColor(CGContextRef, CGFloat, CGFloat) {}
void CGContextSetLineWidth(CGContextRef context, CGFloat width) {
    context->add("width", width);
}
void CGContextSetLineCap(CGContextRef context, CGLineCap cap) {
    context->add(cap == kCGLineCapRound ? "round ends" : "other ends");
}
void CGContextSetLineJoin(CGContextRef context, CGLineJoin join) {
    context->add(join == kCGLineJoinRound ? "round corners" : "other corners");
}
void CGContextMoveToPoint(CGContextRef context, CGFloat x, CGFloat y) {
    context->add("move", x, y);
}
void CGContextAddLineToPoint(CGContextRef context, CGFloat x, CGFloat y) {
    context->add("line", x, y);
}
void CGContextAddCurveToPoint(CGContextRef context, CGFloat x1, CGFloat y1, CGFloat x2, CGFloat y2, CGFloat x,
                              CGFloat y) {
    context->add("curve", x1, y1, x2, y2, x, y);
}
void CGContextClosePath(CGContextRef context) {
    context->add("close");
}
void CGContextAddEllipseInRect(CGContextRef context, CGRect box) {
    context->add("ellipse", box.origin.x, box.origin.y, box.size.width, box.size.height);
}
void CGContextStrokePath(CGContextRef context) {
    context->add("stroke");
}
void CGContextFillPath(CGContextRef context) {
    context->add("fill");
}

namespace wakeloft {
namespace {

TEST(CoreGraphicsGlyphCanvas, DrawsInALayerOfItsOwnSoThatNothingBelowIsCleared) {
    CGContext context;
    {
        CoreGraphicsGlyphCanvas canvas(&context);
        canvas.moveTo({1, 2});
        canvas.lineTo({3, 4});
        canvas.curveTo({1, 2}, {3, 4}, {5, 6});
        canvas.closePath();
        canvas.stroke(1.5);
        canvas.ellipse({1, 2, 3, 4});
        canvas.clear();
        canvas.fill();
    }
    EXPECT_EQ(
        context.done.str(),
        "save\nlayer\nround ends\nround corners\nmove 1 2\nline 3 4\ncurve 1 2 3 4 5 6\nclose\nwidth 1.5\n"
        "stroke\nellipse 1 2 3 4\nclearing\nfill\ndrawing\nfill\nend of layer\nrestore\n");
    EXPECT_EQ(deviceScale(&context), 3);
    context.toDevice = {};
    EXPECT_EQ(deviceScale(&context), 1);
}

} // namespace
} // namespace wakeloft
