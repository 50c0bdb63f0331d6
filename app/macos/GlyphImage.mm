#include "GlyphImage.h"

#include "CoreGraphicsGlyphCanvas.h"
#include "FoundationText.h"
#include "status/Symbol.h"

@interface SilentImageView : NSImageView
@end

@implementation SilentImageView

- (NSView*)hitTest:(NSPoint)point {
    static_cast<void>(point);
    return nil;
}

@end

namespace wakeloft {

namespace {

NSImage* ownSymbol(const std::string& name, CGFloat pointSize) {
    const auto symbol = symbolNamed(name);
    return templateImage(symbol ? symbolImage(*symbol, pointSize) : TemplateImage{});
}

NSImage* configuredSymbol(const std::string& name, NSImageSymbolConfiguration* configuration) {
    return [[NSImage imageWithSystemSymbolName:foundationText(name)
                      accessibilityDescription:nil] imageWithSymbolConfiguration:configuration];
}

NSImageSymbolConfiguration* sized(CGFloat pointSize) {
    return [NSImageSymbolConfiguration configurationWithPointSize:pointSize weight:NSFontWeightRegular];
}

} // namespace

NSImage* templateImage(const TemplateImage& image) {
    // It may be drawn on any thread and after `image` has gone, so the handler has a copy of the drawing,
    // which refers to nothing: no cycle.
    const auto draw = image.draw;
    NSImage* drawn = [NSImage imageWithSize:NSMakeSize(image.width, image.height)
                                    flipped:YES
                             drawingHandler:^BOOL(NSRect) {
                                 NSGraphicsContext* current = NSGraphicsContext.currentContext;
                                 if (current == nil)
                                     return NO;
                                 CGContextRef context = current.CGContext;
                                 CoreGraphicsGlyphCanvas canvas(context);
                                 draw(canvas, deviceScale(context));
                                 return YES;
                             }];
    [drawn setTemplate:YES];
    return drawn;
}

NSImage* symbolImage(const std::string& name, CGFloat pointSize) {
    NSImage* symbol = configuredSymbol(name, sized(pointSize));
    return symbol != nil ? symbol : ownSymbol(name, pointSize);
}

NSImage* symbolImage(const std::string& name, CGFloat pointSize, NSColor* color) {
    NSImageSymbolConfiguration* painted =
        [NSImageSymbolConfiguration configurationWithPaletteColors:@[ color ]];
    NSImage* symbol = configuredSymbol(name, [sized(pointSize) configurationByApplyingConfiguration:painted]);
    return symbol != nil ? symbol : ownSymbol(name, pointSize);
}

NSImageView* silentImageView() {
    SilentImageView* view = [[SilentImageView alloc] initWithFrame:NSZeroRect];
    view.imageScaling = NSImageScaleNone;
    view.accessibilityElement = NO;
    return view;
}

} // namespace wakeloft
