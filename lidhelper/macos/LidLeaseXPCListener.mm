#include "LidLeaseXPCListener.h"

#include "FoundationText.h"
#include "HelperLog.h"
#include "LidLeaseXPC.h"
#include "lease/LidHelperService.h"

#include <utility>

using namespace wakeloft;

using SharedConnection = std::shared_ptr<const wakeloft::LidLeaseConnection>;

/// What one client calls, on threads of XPC's.
@interface LidLeaseExport : NSObject <LidLeaseXPC>
- (instancetype)init NS_UNAVAILABLE;
- (instancetype)initWithConnection:(SharedConnection)connection NS_DESIGNATED_INITIALIZER;
@end

@implementation LidLeaseExport {
    SharedConnection _connection;
}

- (instancetype)initWithConnection:(SharedConnection)connection {
    self = [super init];
    if (self != nil)
        _connection = std::move(connection);
    return self;
}

- (void)renewLeaseUntil:(double)deadline reply:(void (^)(NSString* _Nullable reason))reply {
    void (^answer)(NSString* _Nullable) = [reply copy];
    _connection->renewLeaseUntil(deadline, [answer](const std::optional<std::string>& reason) {
        answer(reason ? foundationText(*reason) : nil);
    });
}

- (void)revokeLeaseWithReply:(void (^)(void))reply {
    void (^answer)(void) = [reply copy];
    _connection->revokeLease([answer] { answer(); });
}

@end

/// The listener asks its delegate only for what it finds there; so that a slip of the pen is found, too.
@protocol LidLeaseAccepting <NSXPCListenerDelegate>
@required
- (BOOL)listener:(NSXPCListener*)listener shouldAcceptNewConnection:(NSXPCConnection*)connection;
@end

@interface LidLeaseListenerDelegate : NSObject <LidLeaseAccepting>
- (instancetype)init NS_UNAVAILABLE;
- (instancetype)initWithListener:(std::shared_ptr<LidLeaseListener>)listener NS_DESIGNATED_INITIALIZER;
@end

@implementation LidLeaseListenerDelegate {
    std::shared_ptr<LidLeaseListener> _listener;
}

- (instancetype)initWithListener:(std::shared_ptr<LidLeaseListener>)listener {
    self = [super init];
    if (self != nil)
        _listener = std::move(listener);
    return self;
}

- (BOOL)listener:(NSXPCListener*)listener shouldAcceptNewConnection:(NSXPCConnection*)connection {
    static_cast<void>(listener);
    const auto& requirement = _listener->callerRequirement();
    if (!requirement)
        return NO;
    @try {
        [connection setCodeSigningRequirement:foundationText(*requirement)];
    } @catch (NSException* exception) {
        logLine(LogPriority::error, "a client was refused, as what it has to meet cannot be demanded: " +
                                        plainText(exception.reason ?: exception.name));
        return NO;
    }
    const SharedConnection client = _listener->accept();
    if (!client)
        return NO;
    connection.exportedInterface = makeLidLeaseXPCInterface();
    connection.exportedObject = [[LidLeaseExport alloc] initWithConnection:client];
    // No cycle: the handler holds our side of the client alone, not the connection that holds it.
    connection.invalidationHandler = ^{
        client->invalidated();
    };
    [connection resume];
    return YES;
}

@end

namespace wakeloft {

struct LidLeaseXPCListener::Implementation {
    NSXPCListener* listener;
    LidLeaseListenerDelegate* delegate; ///< which the listener holds weakly
};

LidLeaseXPCListener::LidLeaseXPCListener(std::shared_ptr<LidLeaseListener> listener)
    : implementation_(std::make_unique<Implementation>()) {
    implementation_->listener =
        [[NSXPCListener alloc] initWithMachServiceName:foundationText(LidHelperService::label)];
    implementation_->delegate = [[LidLeaseListenerDelegate alloc] initWithListener:std::move(listener)];
    implementation_->listener.delegate = implementation_->delegate;
}

LidLeaseXPCListener::~LidLeaseXPCListener() = default;

void LidLeaseXPCListener::resume() {
    [implementation_->listener resume];
}

} // namespace wakeloft
