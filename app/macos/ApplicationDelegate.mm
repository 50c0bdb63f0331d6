#include "ApplicationDelegate.h"

#include "support/MainThread.h"

#import <AppKit/AppKit.h>

#include <utility>

using namespace wakeloft;

/// The application asks its delegate only for what it finds there; so that a slip of the pen is found, too.
@protocol AppLife <NSApplicationDelegate>
@required
- (void)applicationDidFinishLaunching:(NSNotification*)notification;
- (BOOL)applicationShouldHandleReopen:(NSApplication*)sender hasVisibleWindows:(BOOL)hasVisibleWindows;
- (NSApplicationTerminateReply)applicationShouldTerminate:(NSApplication*)sender;
@end

@interface WakeloftApplicationDelegate : NSObject <AppLife>
- (instancetype)init NS_UNAVAILABLE;
- (instancetype)initWithEvents:(ApplicationDelegate::Events)events NS_DESIGNATED_INITIALIZER;
@end

@implementation WakeloftApplicationDelegate {
    ApplicationDelegate::Events _events;
}

- (instancetype)initWithEvents:(ApplicationDelegate::Events)events {
    self = [super init];
    if (self != nil)
        _events = std::move(events);
    return self;
}

- (void)applicationDidFinishLaunching:(NSNotification*)notification {
    static_cast<void>(notification);
    requireMainThread("applicationDidFinishLaunching");
    _events.launched();
}

- (BOOL)applicationShouldHandleReopen:(NSApplication*)sender hasVisibleWindows:(BOOL)hasVisibleWindows {
    static_cast<void>(sender);
    static_cast<void>(hasVisibleWindows);
    _events.reopened();
    return NO; // there is nothing else to open
}

- (NSApplicationTerminateReply)applicationShouldTerminate:(NSApplication*)sender {
    static_cast<void>(sender);
    switch (_events.shouldTerminate()) {
    case TerminateReply::now:
        return NSTerminateNow;
    case TerminateReply::cancel:
        return NSTerminateCancel;
    case TerminateReply::later:
        break;
    }
    return NSTerminateLater;
}

@end

namespace wakeloft {

struct ApplicationDelegate::Application {
    NSApplication* application;
    WakeloftApplicationDelegate* delegate; ///< which the application holds weakly
};

ApplicationDelegate::ApplicationDelegate(Events events) : application_(std::make_unique<Application>()) {
    requireMainThread("ApplicationDelegate");
    application_->application = NSApplication.sharedApplication;
    application_->delegate = [[WakeloftApplicationDelegate alloc] initWithEvents:std::move(events)];
    application_->application.delegate = application_->delegate;
    // As the bundle says too; but not everything is started out of its bundle.
    [application_->application setActivationPolicy:NSApplicationActivationPolicyAccessory];
}

ApplicationDelegate::~ApplicationDelegate() = default;

void ApplicationDelegate::run() {
    [application_->application run];
}

void ApplicationDelegate::terminate() {
    [application_->application terminate:nil];
}

void ApplicationDelegate::reply(bool mayQuit) {
    [application_->application replyToApplicationShouldTerminate:mayQuit];
}

} // namespace wakeloft
