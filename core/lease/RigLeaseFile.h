#pragma once

#include "support/Date.h"

#include <optional>
#include <string>

namespace wakeloft {

/// The file in which a rig records the end of the lease that it honours, in place of the system's setting.
struct RigLeaseFile {
    static constexpr const char* defaultPath = "/tmp/wakeloft-lid-rig.lease";

    /// Seconds since 1970 in the shortest decimal form that reads back the same, always with a decimal point.
    static std::string encode(Date date);
    /// Nothing for a text that is not one finite number, blanks and line breaks around it aside.
    static std::optional<Date> decode(std::string text);
    /// Nothing for a file that cannot be read.
    static std::optional<Date> readAt(const std::string& path);
};

} // namespace wakeloft
