// How an app begins, is opened again, and ends; and what it opens itself.
#pragma once
#include <AppKit/NSApplication.h>
NS_ASSUME_NONNULL_BEGIN
typedef NS_ENUM(NSUInteger, NSApplicationTerminateReply) {
    NSTerminateCancel = 0,
    NSTerminateNow = 1,
    NSTerminateLater = 2
};
typedef NS_ENUM(NSInteger, NSApplicationActivationPolicy) { NSApplicationActivationPolicyAccessory = 1 };
@protocol NSApplicationDelegate <NSObject>
@optional
- (NSApplicationTerminateReply)applicationShouldTerminate:(NSApplication *)sender;
- (BOOL)applicationShouldHandleReopen:(NSApplication *)sender hasVisibleWindows:(BOOL)hasVisibleWindows;
- (void)applicationDidFinishLaunching:(NSNotification *)notification;
@end
@interface NSApplication (Life)
@property (nullable, weak) id<NSApplicationDelegate> delegate;
- (void)run;
- (void)terminate:(nullable id)sender;
- (void)replyToApplicationShouldTerminate:(BOOL)shouldTerminate;
- (BOOL)setActivationPolicy:(NSApplicationActivationPolicy)policy SURFACE_SINCE(10.6);
@end

SURFACE_SINCE(10.15)
@interface NSWorkspaceOpenConfiguration : NSObject <NSCopying>
+ (instancetype)configuration;
@end
@interface NSWorkspace (Opening)
- (void)openURL:(NSURL *)url
        configuration:(NSWorkspaceOpenConfiguration *)configuration
    completionHandler:(nullable void (^)(NSRunningApplication *_Nullable application, NSError *_Nullable error))handler
    SURFACE_SINCE(10.15);
@end
NS_ASSUME_NONNULL_END
