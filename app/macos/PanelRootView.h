// For the views.
#pragma once

#import <AppKit/AppKit.h>

#include <functional>

NS_ASSUME_NONNULL_BEGIN

/// Holds the panel's views, and hears the keys that none of them is for. It is here, and not up the chain of
/// responders, that a window offers Escape and what is typed with the command key, whatever has the focus.
@interface PanelRootView : NSView
- (instancetype)initWithFrame:(NSRect)frame NS_UNAVAILABLE;
- (nullable instancetype)initWithCoder:(NSCoder*)coder NS_UNAVAILABLE;
/// `pressed`: whether the key was for something; it has been done then.
- (instancetype)initWithKeyPressed:(std::function<bool(NSEvent*)>)pressed NS_DESIGNATED_INITIALIZER;
@end

NS_ASSUME_NONNULL_END
