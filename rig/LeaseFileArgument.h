#pragma once

#include "lease/RigLeaseFile.h"

#include <expected>
#include <string>
#include <string_view>

namespace wakeloft::rig {

/// The path in `--lease-file=PATH`, the usual one without arguments, or how the program is used.
inline std::expected<std::string, std::string> leaseFileArgument(int count, char** arguments) {
    constexpr std::string_view option = "--lease-file=";
    if (count == 1)
        return RigLeaseFile::defaultPath;
    const std::string_view argument = count == 2 ? arguments[1] : "";
    if (!argument.starts_with(option))
        return std::unexpected("usage: [--lease-file=PATH]");
    return std::string(argument.substr(option.size()));
}

} // namespace wakeloft::rig
