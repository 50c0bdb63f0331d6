#pragma once

#include <string>

namespace wakeloft {

/// One line that the kernel tells of a device, in a file `name` of the device's folder; empty where it cannot
/// be read.
std::string deviceAttribute(const std::string& device, const char* name);

} // namespace wakeloft
