// refused by the compiler: implicit conversion from nullable pointer
#import <Foundation/Foundation.h>
void use(NSXPCConnection* connection, NSString* _Nullable requirement) {
    [connection setCodeSigningRequirement:requirement];
}
