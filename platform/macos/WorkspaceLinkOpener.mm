#include "WorkspaceLinkOpener.h"

#include "FoundationText.h"
#include "support/MainThread.h"

#import <AppKit/AppKit.h>

namespace wakeloft {

void WorkspaceLinkOpener::open(const std::string& address, Failed failed) {
    requireMainThread("WorkspaceLinkOpener::open");
    NSURL* url = [NSURL URLWithString:foundationText(address)];
    if (url == nil) {
        failed({"NSURL", 0, "“" + address + "” is no address."});
        return;
    }
    const std::function<void(const PlatformError&)> tell = lifetime_.guard(std::move(failed));
    MainRunLoop* loop = &loop_;
    [NSWorkspace.sharedWorkspace
                  openURL:url
            configuration:[NSWorkspaceOpenConfiguration configuration]
        completionHandler:^(NSRunningApplication*, NSError* error) { // on a thread of the system's
            if (error == nil)
                return;
            const PlatformError why = platformError(error);
            loop->perform([tell, why] { tell(why); });
        }];
}

} // namespace wakeloft
