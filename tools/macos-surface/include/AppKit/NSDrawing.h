// Colours, fonts, images.
#pragma once
#include <CoreGraphics/CoreGraphics.h>
#include <Foundation/Foundation.h>
NS_ASSUME_NONNULL_BEGIN
@interface NSColor : NSObject <NSCopying>
@property (class, readonly, strong) NSColor *labelColor SURFACE_SINCE(10.10);
@property (class, readonly, strong) NSColor *secondaryLabelColor SURFACE_SINCE(10.10);
@property (class, readonly, strong) NSColor *linkColor SURFACE_SINCE(10.10);
@property (class, readonly, strong) NSColor *systemRedColor SURFACE_SINCE(10.10);
@property (class, readonly, strong) NSColor *systemOrangeColor SURFACE_SINCE(10.10);
@property (class, readonly, strong) NSColor *systemYellowColor SURFACE_SINCE(10.10);
@property (class, readonly, strong) NSColor *controlAccentColor SURFACE_SINCE(10.14);
@end

typedef NS_ENUM(NSUInteger, NSControlSize) {
    NSControlSizeRegular = 0,
    NSControlSizeSmall = 1,
    NSControlSizeLarge SURFACE_SINCE(11.0) = 3
};
typedef CGFloat NSFontWeight;
SURFACE_EXTERN const NSFontWeight NSFontWeightRegular SURFACE_SINCE(10.11);
SURFACE_EXTERN const NSFontWeight NSFontWeightMedium SURFACE_SINCE(10.11);
typedef NSString *NSFontTextStyle;
typedef NSString *NSFontTextStyleOptionKey;
SURFACE_EXTERN NSFontTextStyle const NSFontTextStyleBody SURFACE_SINCE(11.0);
SURFACE_EXTERN NSFontTextStyle const NSFontTextStyleCallout SURFACE_SINCE(11.0);
SURFACE_EXTERN NSFontTextStyle const NSFontTextStyleFootnote SURFACE_SINCE(11.0);
SURFACE_EXTERN NSFontTextStyle const NSFontTextStyleHeadline SURFACE_SINCE(11.0);
SURFACE_EXTERN NSFontTextStyle const NSFontTextStyleSubheadline SURFACE_SINCE(11.0);
@interface NSFont : NSObject <NSCopying>
@property (class, readonly) CGFloat systemFontSize;
@property (readonly) CGFloat pointSize;
+ (NSFont *)systemFontOfSize:(CGFloat)size;
+ (CGFloat)systemFontSizeForControlSize:(NSControlSize)controlSize;
+ (NSFont *)preferredFontForTextStyle:(NSFontTextStyle)style
                              options:(NSDictionary<NSFontTextStyleOptionKey, id> *)options SURFACE_SINCE(11.0);
+ (NSFont *)monospacedDigitSystemFontOfSize:(CGFloat)size weight:(NSFontWeight)weight SURFACE_SINCE(10.11);
@end

@interface NSGraphicsContext : NSObject
@property (class, nullable, strong) NSGraphicsContext *currentContext;
@property (readonly) CGContextRef CGContext SURFACE_SINCE(10.10);
@end

@interface NSImageSymbolConfiguration : NSObject <NSCopying>
+ (instancetype)configurationWithPointSize:(CGFloat)size weight:(NSFontWeight)weight SURFACE_SINCE(11.0);
+ (instancetype)configurationWithPaletteColors:(NSArray<NSColor *> *)colors SURFACE_SINCE(12.0);
- (instancetype)configurationByApplyingConfiguration:(NSImageSymbolConfiguration *)configuration SURFACE_SINCE(12.0);
@end
@interface NSImage : NSObject <NSCopying>
- (void)setTemplate:(BOOL)isTemplate; // the property's own name is taken in C++
+ (nullable instancetype)imageWithSystemSymbolName:(NSString *)name
                          accessibilityDescription:(nullable NSString *)description SURFACE_SINCE(11.0);
+ (NSImage *)imageWithSize:(NSSize)size
                   flipped:(BOOL)isFlipped
            drawingHandler:(BOOL (^)(NSRect area))handler SURFACE_SINCE(10.8);
- (nullable NSImage *)imageWithSymbolConfiguration:(NSImageSymbolConfiguration *)configuration SURFACE_SINCE(11.0);
@end
NS_ASSUME_NONNULL_END
