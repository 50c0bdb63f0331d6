#pragma once

#include "support/Error.h"

#include <expected>
#include <string>

namespace wakeloft {

/// A file in the service's runtime folder that says, to whoever looks after a crash, that the lock was held
/// and that the computer is to sleep if the lid is shut. Without a service manager there is none.
class CrashMark {
  public:
    /// In the folder that RUNTIME_DIRECTORY names.
    CrashMark();

    /// Makes or removes the file, if that is a change.
    std::expected<void, PlatformError> set(bool isSet);
    /// Whether a process before this one left it; removes it.
    bool take();

  private:
    std::string path_;
    bool isSet_ = false;
};

} // namespace wakeloft
