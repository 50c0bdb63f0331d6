// refused by the compiler: method 'revokeLeaseWithReply:' in protocol 'LidLeaseXPC' not implemented
#import "LidLeaseXPC.h"
@interface HalfAHelper : NSObject <LidLeaseXPC>
@end
@implementation HalfAHelper
- (void)renewLeaseUntil:(double)deadline reply:(void (^)(NSString* _Nullable reason))reply {
    reply(deadline > 0 ? nil : @"no");
}
@end
