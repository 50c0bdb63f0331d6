#include "CoreGraphicsGlyphCanvas.h"
#include "status/MenuBarIcon.h"

#include <gtest/gtest.h>

#include <sstream>

// A context that is the list of what was done to it.
struct CGContext {
    std::ostringstream done;
    CGAffineTransform toDevice{2, 0, 0, -2, 0, 0};
    bool isClearing = false;
    bool isRound = false;
    double width = 0;
    int layers = 0;
    int states = 0;

    template <class... Numbers>
    void add(const char* what, Numbers... numbers) {
        done << what;
        ((done << ' ' << numbers), ...);
        done << '\n';
    }
};

void CGContextSaveGState(CGContextRef context) {
    ++context->states;
}
void CGContextRestoreGState(CGContextRef context) {
    --context->states;
}
void CGContextBeginTransparencyLayer(CGContextRef context, CFDictionaryRef) {
    ++context->layers;
}
void CGContextEndTransparencyLayer(CGContextRef context) {
    --context->layers;
}
CGAffineTransform CGContextGetUserSpaceToDeviceSpaceTransform(CGContextRef context) {
    return context->toDevice;
}
void CGContextSetBlendMode(CGContextRef context, CGBlendMode mode) {
    context->isClearing = mode == kCGBlendModeClear;
}
void CGContextSetGrayFillColor(CGContextRef, CGFloat, CGFloat) {}
void CGContextSetGrayStrokeColor(CGContextRef, CGFloat, CGFloat) {}
void CGContextSetLineWidth(CGContextRef context, CGFloat width) {
    context->width = width;
}
void CGContextSetLineCap(CGContextRef context, CGLineCap cap) {
    context->isRound = cap == kCGLineCapRound;
}
void CGContextSetLineJoin(CGContextRef context, CGLineJoin join) {
    context->isRound = context->isRound && join == kCGLineJoinRound;
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
    context->add(context->isRound && context->layers > 0 ? "stroke" : "stroke edged", context->width);
}
void CGContextFillPath(CGContextRef context) {
    context->add(!context->isClearing ? "fill" : context->layers > 0 ? "clear" : "hole in the window");
}

namespace wakeloft {
namespace {

/// What is asked of a canvas, in the words of the context above.
class Wanted final : public GlyphCanvas {
  public:
    CGContext list;

    void moveTo(GlyphPoint to) override { list.add("move", to.x, to.y); }
    void lineTo(GlyphPoint to) override { list.add("line", to.x, to.y); }
    void curveTo(GlyphPoint first, GlyphPoint second, GlyphPoint to) override {
        list.add("curve", first.x, first.y, second.x, second.y, to.x, to.y);
    }
    void closePath() override { list.add("close"); }
    void ellipse(GlyphBox box) override { list.add("ellipse", box.x, box.y, box.width, box.height); }
    void stroke(double width) override { list.add("stroke", width); }
    void fill() override { list.add("fill"); }
    void clear() override { list.add("clear"); }
};

TEST(CoreGraphicsGlyphCanvas, DrawsTheGlyphsInALayerOfTheirOwn) {
    for (const bool isOn : {false, true})
        for (const bool isLid : {false, true}) {
            const auto image =
                MenuBarIcon{isOn, isOn, isLid}.image(LayoutDirection::rightToLeft); // with a badge when on
            CGContext context;
            ASSERT_EQ(deviceScale(&context), 2);
            {
                CoreGraphicsGlyphCanvas canvas(&context);
                image.draw(canvas, deviceScale(&context));
            }
            Wanted wanted;
            image.draw(wanted, 2);
            EXPECT_EQ(context.done.str(), wanted.list.done.str());
            EXPECT_NE(context.done.str().find("stroke"), std::string::npos);
            EXPECT_NE(context.done.str().find("clear"), std::string::npos);
            EXPECT_EQ(context.layers, 0);
            EXPECT_EQ(context.states, 0);
            EXPECT_FALSE(context.isClearing);
        }
}

TEST(CoreGraphicsGlyphCanvas, ScalesAsTheContextDoes) {
    CGContext context;
    context.toDevice = {0, 3, -3, 0, 10, 10}; // turned
    EXPECT_EQ(deviceScale(&context), 3);
    context.toDevice = {};
    EXPECT_EQ(deviceScale(&context), 1);
}

} // namespace
} // namespace wakeloft
