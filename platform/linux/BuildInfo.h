#pragma once

#include "preferences/AboutInfo.h"

namespace wakeloft {

/// What the build says of itself: its version, and its number where it was given one.
InfoDictionary buildInfoDictionary();

} // namespace wakeloft
