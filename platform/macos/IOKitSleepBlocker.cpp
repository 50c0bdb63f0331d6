#include "IOKitSleepBlocker.h"

#include "CoreFoundationText.h"
#include "support/MainThread.h"

#include <IOKit/pwr_mgt/IOPMLib.h>

namespace wakeloft {

std::expected<void, Error> IOKitSleepBlocker::engage() {
    requireMainThread("IOKitSleepBlocker::engage");
    if (assertionId_)
        return {};
    const auto name = coreFoundationText(reason_);
    IOPMAssertionID id = kIOPMNullAssertionID;
    const IOReturn result = IOPMAssertionCreateWithName(kIOPMAssertionTypePreventUserIdleSystemSleep,
                                                        kIOPMAssertionLevelOn, name.get(), &id);
    if (result != kIOReturnSuccess)
        return std::unexpected(SleepBlockerError::assertionFailed(result));
    assertionId_ = id;
    return {};
}

void IOKitSleepBlocker::release() {
    requireMainThread("IOKitSleepBlocker::release");
    if (!assertionId_)
        return;
    IOPMAssertionRelease(*assertionId_); // nothing could be done about a failure: it ends with the process
    assertionId_.reset();
}

} // namespace wakeloft
