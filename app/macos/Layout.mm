#include "Layout.h"

#include "FoundationText.h"

namespace wakeloft {

namespace {

NSStackView* stack(NSArray<NSView*>* views, CGFloat spacing, NSUserInterfaceLayoutOrientation orientation) {
    NSStackView* stack = [NSStackView stackViewWithViews:views];
    stack.orientation = orientation;
    stack.spacing = spacing;
    stack.detachesHiddenViews = YES;
    return stack;
}

NSTextField* styled(NSTextField* label, NSFont* font, NSColor* color) {
    label.font = font;
    label.textColor = color;
    label.selectable = NO;
    return label;
}

} // namespace

NSStackView* column(NSArray<NSView*>* views, CGFloat spacing) {
    NSStackView* column = stack(views, spacing, NSUserInterfaceLayoutOrientationVertical);
    column.alignment = NSLayoutAttributeLeading;
    return column;
}

NSStackView* row(NSArray<NSView*>* views, CGFloat spacing) {
    NSStackView* row = stack(views, spacing, NSUserInterfaceLayoutOrientationHorizontal);
    row.alignment = NSLayoutAttributeCenterY;
    row.distribution = NSStackViewDistributionFill;
    return row;
}

void setWidth(NSView* view, CGFloat width) {
    [view.widthAnchor constraintEqualToConstant:width].active = YES;
}

void fill(NSView* view, NSView* content, NSEdgeInsets insets, NSLayoutPriority bottomPriority) {
    [view addSubview:content];
    content.translatesAutoresizingMaskIntoConstraints = NO;
    [content.leadingAnchor constraintEqualToAnchor:view.leadingAnchor constant:insets.left].active = YES;
    [view.trailingAnchor constraintEqualToAnchor:content.trailingAnchor constant:insets.right].active = YES;
    [content.topAnchor constraintEqualToAnchor:view.topAnchor constant:insets.top].active = YES;
    NSLayoutConstraint* bottom = [view.bottomAnchor constraintEqualToAnchor:content.bottomAnchor
                                                                   constant:insets.bottom];
    bottom.priority = bottomPriority;
    bottom.active = YES;
}

void setDirection(NSView* view, bool isRightToLeft) {
    view.userInterfaceLayoutDirection =
        isRightToLeft ? NSUserInterfaceLayoutDirectionRightToLeft : NSUserInterfaceLayoutDirectionLeftToRight;
    if ([view isKindOfClass:[NSControl class]])
        ((NSControl*)view).baseWritingDirection =
            isRightToLeft ? NSWritingDirectionRightToLeft : NSWritingDirectionLeftToRight;
    for (NSView* each in view.subviews)
        setDirection(each, isRightToLeft);
}

NSFont* styledFont(NSFontTextStyle style) {
    return [NSFont preferredFontForTextStyle:style options:[NSDictionary dictionary]];
}

NSTextField* label(NSFont* font, NSColor* color) {
    return styled([NSTextField labelWithString:@""], font, color);
}

NSTextField* paragraph(NSFont* font, NSColor* color, CGFloat width) {
    NSTextField* paragraph = styled([NSTextField wrappingLabelWithString:@""], font, color);
    paragraph.preferredMaxLayoutWidth = width;
    return paragraph;
}

void setText(NSTextField* label, const std::string& text) {
    label.stringValue = foundationText(text);
}

} // namespace wakeloft
