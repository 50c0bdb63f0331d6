// Windows, popovers, alerts.
#pragma once
#include <AppKit/NSControls.h>
NS_ASSUME_NONNULL_BEGIN
SURFACE_EXTERN NSNotificationName const NSWindowDidBecomeKeyNotification;
@interface NSWindow : NSResponder
@property (nullable, strong) __kindof NSView *contentView;
- (void)makeKeyWindow;
@end

@interface NSViewController : NSResponder
@property (strong) NSView *view;
- (instancetype)initWithNibName:(nullable NSString *)name bundle:(nullable NSBundle *)bundle NS_DESIGNATED_INITIALIZER;
- (nullable instancetype)initWithCoder:(NSCoder *)coder NS_DESIGNATED_INITIALIZER;
@end

typedef NS_ENUM(NSInteger, NSPopoverBehavior) {
    NSPopoverBehaviorApplicationDefined = 0,
    NSPopoverBehaviorTransient = 1
};
@protocol NSPopoverDelegate <NSObject>
@optional
- (void)popoverWillClose:(NSNotification *)notification;
@end
@interface NSPopover : NSResponder
@property (nullable, weak) id<NSPopoverDelegate> delegate;
@property (nullable, strong) NSViewController *contentViewController;
@property NSPopoverBehavior behavior;
@property NSSize contentSize;
@property BOOL animates;
- (void)showRelativeToRect:(NSRect)rect ofView:(NSView *)view preferredEdge:(NSRectEdge)edge;
- (void)close;
@end

typedef NS_ENUM(NSUInteger, NSAlertStyle) { NSAlertStyleInformational = 1 };
typedef NSInteger NSModalResponse;
static const NSModalResponse NSAlertFirstButtonReturn = 1000;
@interface NSAlert : NSObject
@property (copy) NSString *messageText;
@property (copy) NSString *informativeText;
@property NSAlertStyle alertStyle;
@property (readonly, strong) NSWindow *window;
- (NSButton *)addButtonWithTitle:(NSString *)title;
- (void)layout SURFACE_SINCE(10.5);
- (NSModalResponse)runModal;
@end
NS_ASSUME_NONNULL_END
