#pragma once
#include <Foundation/NSValues.h>
NS_ASSUME_NONNULL_BEGIN
@class NSXPCConnection, NSXPCListener;
typedef NS_OPTIONS(NSUInteger, NSXPCConnectionOptions) { NSXPCConnectionPrivileged = 1 << 12 };
@protocol NSXPCProxyCreating
- (id)remoteObjectProxyWithErrorHandler:(void (^)(NSError *error))handler;
@end
@interface NSXPCInterface : NSObject
+ (NSXPCInterface *)interfaceWithProtocol:(Protocol *)protocol;
@end
@interface NSXPCConnection : NSObject <NSXPCProxyCreating>
@property (nullable, retain) NSXPCInterface *remoteObjectInterface;
@property (nullable, retain) NSXPCInterface *exportedInterface;
@property (nullable, retain) id exportedObject;
@property (nullable, copy) void (^invalidationHandler)(void);
- (instancetype)initWithMachServiceName:(NSString *)name options:(NSXPCConnectionOptions)options;
- (void)setCodeSigningRequirement:(NSString *)requirement SURFACE_SINCE(13.0);
- (void)resume;
- (void)invalidate;
@end
@protocol NSXPCListenerDelegate <NSObject>
@optional
- (BOOL)listener:(NSXPCListener *)listener shouldAcceptNewConnection:(NSXPCConnection *)newConnection;
@end
@interface NSXPCListener : NSObject
@property (nullable, weak) id<NSXPCListenerDelegate> delegate;
- (instancetype)initWithMachServiceName:(NSString *)name NS_DESIGNATED_INITIALIZER;
- (void)resume;
@end
NS_ASSUME_NONNULL_END
