#pragma once

#include "support/Error.h"

#include <expected>
#include <string>
#include <utility>

namespace wakeloft {

/// Nothing can be measured: says why, and what the measured programs said, and ends this program, whose
/// children end with it.
[[noreturn]] void fail(const std::string& sentence);

/// The value, or the end of the program with the error's sentence.
template <class Value>
Value need(std::expected<Value, PlatformError> result) {
    if (!result)
        fail(result.error().description);
    return *std::move(result);
}

} // namespace wakeloft
