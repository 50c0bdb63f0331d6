#include "XPCLidLeaseConnection.h"

#include "FoundationText.h"
#include "LidLeaseXPC.h"
#include "lease/LidHelperService.h"
#include "support/MainThread.h"

#include <utility>

namespace wakeloft {

namespace {

// No cycle in any of its blocks: a request's hold what it is to be told with, none holds the connection.
class XPCLidLeaseConnection final : public LidLeaseClientConnection {
  public:
    explicit XPCLidLeaseConnection(NSXPCConnection* connection) : connection_(connection) {}
    XPCLidLeaseConnection(const XPCLidLeaseConnection&) = delete;
    XPCLidLeaseConnection& operator=(const XPCLidLeaseConnection&) = delete;
    ~XPCLidLeaseConnection() override { invalidate(); } // one that is only let go of would live on

    void renewLeaseUntil(double until, RenewalReply reply, Failed failed) override {
        [proxyOr(failed) renewLeaseUntil:until
                                   reply:^(NSString* reason) {
                                       reply(reason == nil ? std::nullopt : std::optional(plainText(reason)));
                                   }];
    }

    void revokeLease(std::function<void()> reply, Failed failed) override {
        [proxyOr(failed) revokeLeaseWithReply:^{
            reply();
        }];
    }

    void invalidate() override {
        requireMainThread("XPCLidLeaseConnection::invalidate");
        [std::exchange(connection_, nil) invalidate];
    }

  private:
    /// Nothing, after a failure was told.
    id<LidLeaseXPC> proxyOr(const Failed& failed) const {
        requireMainThread("a request to the lid helper");
        const Failed tell = failed;
        id proxy = [connection_ remoteObjectProxyWithErrorHandler:^(NSError* error) {
            NSLog(@"Wakeloft: the lid helper cannot be asked: %@", error.localizedDescription);
            tell();
        }];
        if ([proxy conformsToProtocol:@protocol(LidLeaseXPC)])
            return proxy;
        tell();
        return nil;
    }

    NSXPCConnection* connection_;
};

std::unique_ptr<LidLeaseClientConnection> connectTo(const std::string& helperRequirement) {
    NSXPCConnection* connection =
        [[NSXPCConnection alloc] initWithMachServiceName:foundationText(LidHelperService::label)
                                                 options:NSXPCConnectionPrivileged];
    connection.remoteObjectInterface = makeLidLeaseXPCInterface();
    @try {
        [connection setCodeSigningRequirement:foundationText(helperRequirement)];
    } @catch (NSException* exception) {
        NSLog(@"Wakeloft: the lid helper's requirement is refused: %@", exception.reason);
        return nullptr;
    }
    [connection resume];
    return std::make_unique<XPCLidLeaseConnection>(connection);
}

} // namespace

LidLeaseConnectionFactory xpcLidLeaseConnections() {
    return connectTo;
}

} // namespace wakeloft
