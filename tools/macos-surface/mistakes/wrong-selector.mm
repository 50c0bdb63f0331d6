// refused by the compiler: no visible @interface for 'NSXPCConnection' declares the selector
#import <Foundation/Foundation.h>
NSXPCConnection* use() {
    return [[NSXPCConnection alloc] initWithServiceName:@"somebody"];
}
