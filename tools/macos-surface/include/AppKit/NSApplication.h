// The application and the workspace around it.
#pragma once
#include <AppKit/NSResponder.h>
NS_ASSUME_NONNULL_BEGIN
SURFACE_EXTERN NSRunLoopMode const NSEventTrackingRunLoopMode;
SURFACE_EXTERN NSNotificationName const NSApplicationDidChangeScreenParametersNotification;
SURFACE_EXTERN NSNotificationName const NSApplicationDidResignActiveNotification;
@interface NSApplication : NSResponder
@property (class, readonly, strong) __kindof NSApplication *sharedApplication;
- (void)activate SURFACE_SINCE(14.0);
@end

SURFACE_EXTERN NSNotificationName const NSWorkspaceDidWakeNotification;
@interface NSWorkspace : NSObject
@property (class, readonly, strong) NSWorkspace *sharedWorkspace;
@property (readonly, strong) NSNotificationCenter *notificationCenter;
@property (readonly) BOOL accessibilityDisplayShouldReduceMotion SURFACE_SINCE(10.12);
@end
NS_ASSUME_NONNULL_END
