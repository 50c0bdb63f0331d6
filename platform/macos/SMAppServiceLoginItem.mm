#include "SMAppServiceLoginItem.h"

#include "FoundationText.h"
#include "support/MainThread.h"

#import <ServiceManagement/ServiceManagement.h>

namespace wakeloft {

struct SMAppServiceLoginItem::Implementation {
    SMAppService* service;
    NSURL* bundleUrl;
};

SMAppServiceLoginItem::SMAppServiceLoginItem()
    : implementation_(
          std::make_unique<Implementation>(SMAppService.mainAppService, NSBundle.mainBundle.bundleURL)) {}

SMAppServiceLoginItem::~SMAppServiceLoginItem() = default;

LoginItemState SMAppServiceLoginItem::state() const {
    requireMainThread("SMAppServiceLoginItem::state");
    switch (implementation_->service.status) {
    case SMAppServiceStatusEnabled:
        return LoginItemState::enabled;
    case SMAppServiceStatusRequiresApproval:
        return LoginItemState::requiresApproval;
    case SMAppServiceStatusNotRegistered:
    case SMAppServiceStatusNotFound:
        break;
    }
    return LoginItemState::disabled; // also what a later system may add
}

bool SMAppServiceLoginItem::isAtStableLocation() const {
    NSString* app = implementation_->bundleUrl.URLByResolvingSymlinksInPath.URLByStandardizingPath.path;
    NSArray<NSURL*>* folders =
        [NSFileManager.defaultManager URLsForDirectory:NSApplicationDirectory
                                             inDomains:NSUserDomainMask | NSLocalDomainMask];
    for (NSURL* each in folders) {
        NSString* folder = each.URLByStandardizingPath.path;
        if (folder != nil && [app hasPrefix:[folder stringByAppendingString:@"/"]])
            return true;
    }
    return false;
}

std::expected<void, Error> SMAppServiceLoginItem::registerItem() {
    requireMainThread("SMAppServiceLoginItem::registerItem");
    NSError* error = nil;
    SMAppService* service = implementation_->service;
    if ([service registerAndReturnError:&error])
        return {};
    // So some releases say that it is as asked. The number alone could be another service's error.
    if (error.code == kSMErrorAlreadyRegistered && service.status == SMAppServiceStatusEnabled)
        return {};
    return std::unexpected(platformError(error));
}

std::expected<void, Error> SMAppServiceLoginItem::unregisterItem() {
    requireMainThread("SMAppServiceLoginItem::unregisterItem");
    NSError* error = nil;
    if ([implementation_->service unregisterAndReturnError:&error])
        return {};
    return std::unexpected(platformError(error));
}

void SMAppServiceLoginItem::openSystemSettings() {
    [SMAppService openSystemSettingsLoginItems];
}

} // namespace wakeloft
