// What shows a value or takes a click.
#pragma once
#include <AppKit/NSDrawing.h>
#include <AppKit/NSView.h>
NS_ASSUME_NONNULL_BEGIN
typedef NSInteger NSControlStateValue;
static const NSControlStateValue NSControlStateValueOff = 0;
static const NSControlStateValue NSControlStateValueOn = 1;
typedef NS_ENUM(NSInteger, NSWritingDirection) {
    NSWritingDirectionNatural = -1,
    NSWritingDirectionLeftToRight = 0,
    NSWritingDirectionRightToLeft = 1
};
typedef NS_ENUM(NSInteger, NSTextAlignment) {
    NSTextAlignmentLeft = 0,
    NSTextAlignmentCenter = 1, // on Apple silicon
    NSTextAlignmentRight = 2,
    NSTextAlignmentNatural = 4
};
@interface NSControl : NSView
@property (nullable, weak) id target;
@property (nullable) SEL action;
@property (getter=isEnabled) BOOL enabled;
@property NSControlSize controlSize;
@property (copy) NSString *stringValue;
@property (nullable, strong) NSFont *font;
@property NSTextAlignment alignment;
@property NSWritingDirection baseWritingDirection;
- (NSInteger)sendActionOn:(NSEventMask)mask;
@end

@interface NSTextField : NSControl
@property (nullable, copy) NSColor *textColor;
@property (getter=isSelectable) BOOL selectable;
@property CGFloat preferredMaxLayoutWidth SURFACE_SINCE(10.8);
+ (instancetype)labelWithString:(NSString *)text SURFACE_SINCE(10.12);
+ (instancetype)wrappingLabelWithString:(NSString *)text SURFACE_SINCE(10.12);
@end

typedef NS_ENUM(NSUInteger, NSBezelStyle) { NSBezelStylePush = 1 };
typedef NS_ENUM(NSUInteger, NSCellImagePosition) { NSNoImage = 0, NSImageLeading = 7 };
@interface NSButton : NSControl
@property (copy) NSString *title;
@property (nullable, strong) NSImage *image;
@property (nullable, strong) NSImage *alternateImage;
@property NSCellImagePosition imagePosition;
@property BOOL imageHugsTitle SURFACE_SINCE(10.12);
@property NSBezelStyle bezelStyle;
@property (getter=isBordered) BOOL bordered;
@property (nullable, copy) NSColor *bezelColor SURFACE_SINCE(10.12);
@property (nullable, copy) NSColor *contentTintColor SURFACE_SINCE(10.14);
@property NSControlStateValue state;
@property (copy) NSString *keyEquivalent;
+ (instancetype)buttonWithTitle:(NSString *)title
                         target:(nullable id)target
                         action:(nullable SEL)action SURFACE_SINCE(10.12);
+ (instancetype)checkboxWithTitle:(NSString *)title
                           target:(nullable id)target
                           action:(nullable SEL)action SURFACE_SINCE(10.12);
- (void)highlight:(BOOL)isHighlighted;
@end

SURFACE_SINCE(10.15)
@interface NSSwitch : NSControl
@property NSControlStateValue state;
@end

typedef NS_ENUM(NSUInteger, NSImageScaling) { NSImageScaleNone = 2 };
@interface NSImageView : NSControl
@property (nullable, strong) NSImage *image;
@property NSImageScaling imageScaling;
@property (nullable, copy) NSColor *contentTintColor SURFACE_SINCE(10.14);
@end
NS_ASSUME_NONNULL_END
