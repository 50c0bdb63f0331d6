// What the app and the helper say to each other, for .mm files. Selectors and types are the wire: they stay.
#pragma once

#import <Foundation/Foundation.h>

NS_ASSUME_NONNULL_BEGIN

@protocol LidLeaseXPC
/// The lease is to end at `deadline`, in seconds since 1970. No reason: it is granted or extended.
- (void)renewLeaseUntil:(double)deadline reply:(void (^)(NSString* _Nullable reason))reply;
/// Answers when the helper has handled it, whatever came of it.
- (void)revokeLeaseWithReply:(void (^)(void))reply;
@end

namespace wakeloft {

/// For both ends.
inline NSXPCInterface* makeLidLeaseXPCInterface() {
    return [NSXPCInterface interfaceWithProtocol:@protocol(LidLeaseXPC)];
}

} // namespace wakeloft

NS_ASSUME_NONNULL_END
