#pragma once

#include "Owned.h"

#include <string>

namespace wakeloft {

/// Never nothing: bytes that are no UTF-8 are taken for Latin 1.
Owned<CFStringRef> coreFoundationText(const std::string& text);

/// In UTF-8; what cannot be told in it becomes a question mark.
std::string plainText(CFStringRef text);

} // namespace wakeloft
