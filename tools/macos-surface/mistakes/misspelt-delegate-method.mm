// refused by the compiler: method 'listener:shouldAcceptNewConnection:' in protocol 'Accepting'
#import <Foundation/Foundation.h>
@protocol Accepting <NSXPCListenerDelegate>
@required
- (BOOL)listener:(NSXPCListener*)listener shouldAcceptNewConnection:(NSXPCConnection*)connection;
@end
@interface Delegate : NSObject <Accepting>
@end
@implementation Delegate
- (BOOL)listener:(NSXPCListener*)listener shouldAcceptConnection:(NSXPCConnection*)connection {
    return listener != nil && connection != nil;
}
@end
