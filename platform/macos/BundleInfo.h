#pragma once

#include "preferences/AboutInfo.h"
#include "preferences/FeedbackLink.h"

namespace wakeloft {

/// What the app's bundle says of itself; nothing outside of one.
std::optional<InfoDictionary> bundleInfo();

OperatingSystemVersion systemVersion();

} // namespace wakeloft
