#pragma once

#include "session/AwakeFailure.h"
#include "support/Localizer.h"

#include <string>

namespace wakeloft {

/// The sentence that tells the user of `failure`. What a system said is kept in its own words.
std::string failureText(const AwakeFailure& failure, const Localizer& localizer);

} // namespace wakeloft
