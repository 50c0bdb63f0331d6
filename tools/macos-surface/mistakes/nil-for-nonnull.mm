// refused by the compiler: null passed to a callee that requires a non-null argument
#import <Foundation/Foundation.h>
void use(NSXPCConnection* connection) {
    [connection setCodeSigningRequirement:nil];
}
