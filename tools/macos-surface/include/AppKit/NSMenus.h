// Menus, and the items of the menu bar.
#pragma once
#include <AppKit/NSControls.h>
NS_ASSUME_NONNULL_BEGIN
@interface NSMenuItem : NSObject <NSCopying>
@property (nullable, weak) id target;
@property (nullable, strong) id representedObject;
+ (NSMenuItem *)separatorItem;
- (instancetype)initWithTitle:(NSString *)title
                       action:(nullable SEL)action
                keyEquivalent:(NSString *)key NS_DESIGNATED_INITIALIZER;
@end
@interface NSMenu : NSObject <NSCopying>
@property CGFloat minimumWidth SURFACE_SINCE(10.6);
@property NSUserInterfaceLayoutDirection userInterfaceLayoutDirection SURFACE_SINCE(10.11);
- (instancetype)initWithTitle:(NSString *)title NS_DESIGNATED_INITIALIZER;
- (void)addItem:(NSMenuItem *)item;
- (BOOL)popUpMenuPositioningItem:(nullable NSMenuItem *)item
                      atLocation:(NSPoint)location
                          inView:(nullable NSView *)view SURFACE_SINCE(10.6);
@end

static const CGFloat NSVariableStatusItemLength = -1;
@interface NSStatusBarButton : NSButton
@end
@interface NSStatusItem : NSObject
@property (nullable, readonly, strong) NSStatusBarButton *button SURFACE_SINCE(10.10);
@end
@interface NSStatusBar : NSObject
@property (class, readonly, strong) NSStatusBar *systemStatusBar;
- (NSStatusItem *)statusItemWithLength:(CGFloat)length;
- (void)removeStatusItem:(NSStatusItem *)item;
@end
NS_ASSUME_NONNULL_END
