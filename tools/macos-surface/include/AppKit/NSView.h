// Views, and how they are laid out.
#pragma once
#include <AppKit/NSResponder.h>
NS_ASSUME_NONNULL_BEGIN
@class NSLayoutDimension, NSLayoutXAxisAnchor, NSLayoutYAxisAnchor, NSWindow;
typedef NS_ENUM(NSInteger, NSUserInterfaceLayoutDirection) {
    NSUserInterfaceLayoutDirectionLeftToRight = 0,
    NSUserInterfaceLayoutDirectionRightToLeft = 1
};
typedef NS_ENUM(NSInteger, NSUserInterfaceLayoutOrientation) {
    NSUserInterfaceLayoutOrientationHorizontal = 0,
    NSUserInterfaceLayoutOrientationVertical = 1
};
typedef NS_ENUM(NSInteger, NSLayoutConstraintOrientation) {
    NSLayoutConstraintOrientationHorizontal = 0,
    NSLayoutConstraintOrientationVertical = 1
};
typedef NS_ENUM(NSInteger, NSLayoutAttribute) {
    NSLayoutAttributeLeading = 5,
    NSLayoutAttributeCenterX = 9,
    NSLayoutAttributeCenterY = 10
};
typedef float NSLayoutPriority;
static const NSLayoutPriority NSLayoutPriorityDragThatCannotResizeWindow = 490;
static const NSLayoutPriority NSLayoutPriorityRequired = 1000;

@interface NSLayoutConstraint : NSObject
@property CGFloat constant;
@property NSLayoutPriority priority;
@property (getter=isActive) BOOL active SURFACE_SINCE(10.10);
@end
@interface NSLayoutAnchor<AnchorType> : NSObject
- (NSLayoutConstraint *)constraintEqualToAnchor:(NSLayoutAnchor<AnchorType> *)anchor SURFACE_SINCE(10.11);
- (NSLayoutConstraint *)constraintEqualToAnchor:(NSLayoutAnchor<AnchorType> *)anchor
                                       constant:(CGFloat)constant SURFACE_SINCE(10.11);
@end
@interface NSLayoutXAxisAnchor : NSLayoutAnchor <NSLayoutXAxisAnchor *>
@end
@interface NSLayoutYAxisAnchor : NSLayoutAnchor <NSLayoutYAxisAnchor *>
@end
@interface NSLayoutDimension : NSLayoutAnchor <NSLayoutDimension *>
- (NSLayoutConstraint *)constraintEqualToConstant:(CGFloat)constant SURFACE_SINCE(10.11);
@end

@interface NSView : NSResponder <NSAccessibility>
@property (nullable, readonly, assign) NSWindow *window;
@property (copy) NSArray<__kindof NSView *> *subviews;
@property (getter=isHidden) BOOL hidden;
@property NSRect bounds;
@property (readonly) NSSize fittingSize SURFACE_SINCE(10.7);
@property (readonly) NSSize intrinsicContentSize SURFACE_SINCE(10.7);
@property BOOL translatesAutoresizingMaskIntoConstraints SURFACE_SINCE(10.7);
@property NSUserInterfaceLayoutDirection userInterfaceLayoutDirection SURFACE_SINCE(10.8);
@property (readonly, strong) NSLayoutXAxisAnchor *leadingAnchor SURFACE_SINCE(10.11);
@property (readonly, strong) NSLayoutXAxisAnchor *trailingAnchor SURFACE_SINCE(10.11);
@property (readonly, strong) NSLayoutYAxisAnchor *topAnchor SURFACE_SINCE(10.11);
@property (readonly, strong) NSLayoutYAxisAnchor *bottomAnchor SURFACE_SINCE(10.11);
@property (readonly, strong) NSLayoutYAxisAnchor *centerYAnchor SURFACE_SINCE(10.11);
@property (readonly, strong) NSLayoutDimension *widthAnchor SURFACE_SINCE(10.11);
@property (readonly, strong) NSLayoutDimension *heightAnchor SURFACE_SINCE(10.11);
- (instancetype)initWithFrame:(NSRect)frame NS_DESIGNATED_INITIALIZER;
- (nullable instancetype)initWithCoder:(NSCoder *)coder NS_DESIGNATED_INITIALIZER;
- (void)addSubview:(NSView *)view;
- (void)viewDidMoveToWindow;
- (nullable NSView *)hitTest:(NSPoint)point;
- (void)setContentHuggingPriority:(NSLayoutPriority)priority
                   forOrientation:(NSLayoutConstraintOrientation)orientation SURFACE_SINCE(10.7);
@end

typedef NS_ENUM(NSInteger, NSStackViewDistribution) {
    NSStackViewDistributionGravityAreas = -1,
    NSStackViewDistributionFill = 0
};
@interface NSStackView : NSView
@property NSUserInterfaceLayoutOrientation orientation;
@property NSLayoutAttribute alignment;
@property NSStackViewDistribution distribution SURFACE_SINCE(10.11);
@property CGFloat spacing;
@property NSEdgeInsets edgeInsets;
@property BOOL detachesHiddenViews SURFACE_SINCE(10.11);
+ (instancetype)stackViewWithViews:(NSArray<NSView *> *)views;
- (void)addArrangedSubview:(NSView *)view SURFACE_SINCE(10.11);
- (void)setCustomSpacing:(CGFloat)spacing afterView:(NSView *)view;
@end

typedef NS_ENUM(NSInteger, NSGridRowAlignment) {
    NSGridRowAlignmentInherited = 0,
    NSGridRowAlignmentNone = 1,
    NSGridRowAlignmentFirstBaseline = 2
};
SURFACE_SINCE(10.12)
@interface NSGridRow : NSObject
@property (getter=isHidden) BOOL hidden;
@end
SURFACE_SINCE(10.12)
@interface NSGridColumn : NSObject
@property CGFloat width;
@property (getter=isHidden) BOOL hidden;
@end
SURFACE_SINCE(10.12)
@interface NSGridCell : NSObject
@property (class, readonly, strong) NSView *emptyContentView;
@end
SURFACE_SINCE(10.12)
@interface NSGridView : NSView
@property NSGridRowAlignment rowAlignment;
@property CGFloat rowSpacing;
@property CGFloat columnSpacing;
+ (instancetype)gridViewWithViews:(NSArray<NSArray<NSView *> *> *)rows;
- (NSGridRow *)rowAtIndex:(NSInteger)index;
- (NSGridColumn *)columnAtIndex:(NSInteger)index;
@end

typedef NS_ENUM(NSUInteger, NSBoxType) { NSBoxPrimary = 0, NSBoxSeparator = 2 };
@interface NSBox : NSView
@property NSBoxType boxType;
@end
NS_ASSUME_NONNULL_END
