// The application and the workspace around it.
#pragma once
#include <AppKit/NSResponder.h>
NS_ASSUME_NONNULL_BEGIN
SURFACE_EXTERN NSRunLoopMode const NSEventTrackingRunLoopMode;
SURFACE_EXTERN NSNotificationName const NSApplicationDidChangeScreenParametersNotification;
SURFACE_EXTERN NSNotificationName const NSApplicationDidResignActiveNotification;
typedef NS_OPTIONS(NSUInteger, NSApplicationActivationOptions) {
    NSApplicationActivateAllWindows = 1 << 0
};
SURFACE_SINCE(10.6)
@interface NSRunningApplication : NSObject
@property (class, readonly, strong) NSRunningApplication *currentApplication;
@property (readonly, getter=isTerminated) BOOL terminated;
- (BOOL)activateFromApplication:(NSRunningApplication *)application
                        options:(NSApplicationActivationOptions)options SURFACE_SINCE(14.0);
@end
@interface NSApplication : NSResponder
@property (class, readonly, strong) __kindof NSApplication *sharedApplication;
@property (getter=isActive, readonly) BOOL active;
- (void)activate SURFACE_SINCE(14.0);
- (void)yieldActivationToApplication:(NSRunningApplication *)application SURFACE_SINCE(14.0);
@end

SURFACE_EXTERN NSNotificationName const NSWorkspaceDidWakeNotification;
@interface NSWorkspace : NSObject
@property (class, readonly, strong) NSWorkspace *sharedWorkspace;
@property (readonly, strong) NSNotificationCenter *notificationCenter;
@property (nullable, readonly, strong) NSRunningApplication *frontmostApplication SURFACE_SINCE(10.7);
@property (readonly) BOOL accessibilityDisplayShouldReduceMotion SURFACE_SINCE(10.12);
@end
NS_ASSUME_NONNULL_END
