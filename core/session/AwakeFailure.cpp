#include "session/AwakeFailure.h"

namespace wakeloft {

namespace {

std::variant<AwakeFailure::AssertionRefused, AwakeFailure::Reported> mapped(const Error& error) {
    if (const auto* refused = std::get_if<SleepBlockerError>(&error))
        return AwakeFailure::AssertionRefused{refused->code};
    return AwakeFailure::Reported{std::get<PlatformError>(error).description};
}

} // namespace

AwakeFailure::AwakeFailure(const Error& error) : value(mapped(error)) {}

} // namespace wakeloft
