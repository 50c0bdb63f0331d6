#include "SMAppServiceLidHelperRegistration.h"

#include "FoundationText.h"
#include "support/MainThread.h"

#import <ServiceManagement/ServiceManagement.h>

namespace wakeloft {

struct SMAppServiceLidHelperRegistration::Service {
    SMAppService* service;
};

SMAppServiceLidHelperRegistration::SMAppServiceLidHelperRegistration(const std::string& plistName)
    : service_(
          std::make_unique<Service>([SMAppService daemonServiceWithPlistName:foundationText(plistName)])) {}

SMAppServiceLidHelperRegistration::~SMAppServiceLidHelperRegistration() = default;

LidHelperStatus SMAppServiceLidHelperRegistration::status() const {
    requireMainThread("SMAppServiceLidHelperRegistration::status");
    switch (service_->service.status) {
    case SMAppServiceStatusEnabled:
        return LidHelperStatus::enabled;
    case SMAppServiceStatusRequiresApproval:
        return LidHelperStatus::requiresApproval;
    case SMAppServiceStatusNotFound:
        return LidHelperStatus::notFound;
    case SMAppServiceStatusNotRegistered:
        break;
    }
    return LidHelperStatus::notRegistered; // also what a later system may add
}

std::expected<void, Error> SMAppServiceLidHelperRegistration::registerHelper() {
    requireMainThread("SMAppServiceLidHelperRegistration::registerHelper");
    NSError* error = nil;
    if ([service_->service registerAndReturnError:&error])
        return {};
    return std::unexpected(platformError(error));
}

} // namespace wakeloft
