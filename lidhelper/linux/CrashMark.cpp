#include "CrashMark.h"

#include "Bus.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>

namespace wakeloft {

CrashMark::CrashMark() {
    if (const char* folder = std::getenv("RUNTIME_DIRECTORY"))
        path_ = std::string(folder) + "/suspend-if-closed";
}

std::expected<void, PlatformError> CrashMark::set(bool isSet) {
    if (path_.empty() || isSet == isSet_)
        return {};
    int result = 0;
    if (isSet) {
        constexpr int mode = 0600;
        const int descriptor = open(path_.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC | O_NOFOLLOW, mode);
        result = descriptor < 0 ? -errno : close(descriptor);
    } else if (unlink(path_.c_str()) < 0 && errno != ENOENT) {
        result = -errno;
    }
    if (result < 0)
        return std::unexpected(busFailure("The mark for a crash cannot be changed", result));
    isSet_ = isSet;
    return {};
}

bool CrashMark::take() {
    return !path_.empty() && unlink(path_.c_str()) == 0;
}

} // namespace wakeloft
