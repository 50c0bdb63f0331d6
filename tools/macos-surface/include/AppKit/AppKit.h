#pragma once
#include <Foundation/Foundation.h>
NS_ASSUME_NONNULL_BEGIN
SURFACE_EXTERN NSRunLoopMode const NSEventTrackingRunLoopMode;
SURFACE_EXTERN NSNotificationName const NSApplicationDidChangeScreenParametersNotification;
SURFACE_EXTERN NSNotificationName const NSWorkspaceDidWakeNotification;
@interface NSWorkspace : NSObject
@property (class, readonly, strong) NSWorkspace *sharedWorkspace;
@property (readonly, strong) NSNotificationCenter *notificationCenter;
@end
NS_ASSUME_NONNULL_END
