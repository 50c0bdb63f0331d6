// For the views.
#pragma once

#import <AppKit/AppKit.h>

#include <string>

NS_ASSUME_NONNULL_BEGIN

namespace wakeloft {

/// One view below the other, at the start of the line; hidden ones take no room.
NSStackView* column(NSArray<NSView*>* views, CGFloat spacing);
/// One view after the other, in the middle of the line's height; hidden ones take no room.
NSStackView* row(NSArray<NSView*>* views, CGFloat spacing);

void setWidth(NSView* view, CGFloat width);
/// Puts `content` into `view`, with its edges so far inside. The lower edge is where it is with
/// `bottomPriority`.
void fill(NSView* view, NSView* content, NSEdgeInsets insets,
          NSLayoutPriority bottomPriority = NSLayoutPriorityRequired);

/// Lays out and aligns `view` and all that is in it in that direction.
void setDirection(NSView* view, bool isRightToLeft);

NSFont* styledFont(NSFontTextStyle style);
/// A text of one line.
NSTextField* label(NSFont* font, NSColor* color);
/// A text that wraps at `width`.
NSTextField* paragraph(NSFont* font, NSColor* color, CGFloat width);
void setText(NSTextField* label, const std::string& text);

} // namespace wakeloft

NS_ASSUME_NONNULL_END
