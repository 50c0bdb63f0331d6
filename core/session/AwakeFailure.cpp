#include "session/AwakeFailure.h"

namespace wakeloft {

namespace {

AwakeFailure::Value mapped(const LidSleepBlockerError& error) {
    if (const auto* refused = std::get_if<LidSleepBlockerError::HelperRefused>(&error.value))
        return AwakeFailure::LidHelperRefused{LidHelperRefusal::fromReason(refused->reason)};
    if (std::holds_alternative<LidSleepBlockerError::HelperUnavailable>(error.value))
        return AwakeFailure::LidHelperUnavailable{};
    return AwakeFailure::LidHelperRequiresApproval{};
}

AwakeFailure::Value mapped(const Error& error) {
    if (const auto* refused = std::get_if<SleepBlockerError>(&error))
        return AwakeFailure::AssertionRefused{refused->code};
    if (const auto* lid = std::get_if<LidSleepBlockerError>(&error))
        return mapped(*lid);
    return AwakeFailure::Reported{std::get<PlatformError>(error).description};
}

} // namespace

AwakeFailure::AwakeFailure(const Error& error) : value(mapped(error)) {}

} // namespace wakeloft
