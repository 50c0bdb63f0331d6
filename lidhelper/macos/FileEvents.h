#pragma once

#include "support/Error.h"

#include <expected>
#include <functional>
#include <memory>
#include <string>

namespace wakeloft {

/// Tells that a file may be another one than before: written, replaced, moved, removed or back, alone or with
/// any folder above it. Main thread.
class FileEvents {
  public:
    /// `changed` may be told more often than something changed.
    static std::expected<std::unique_ptr<FileEvents>, PlatformError> watch(const std::string& path,
                                                                           std::function<void()> changed);
    FileEvents(const FileEvents&) = delete;
    FileEvents& operator=(const FileEvents&) = delete;
    ~FileEvents();

  private:
    struct Stream;
    explicit FileEvents(std::function<void()> changed);

    std::function<void()> changed_;
    std::unique_ptr<Stream> stream_;
};

} // namespace wakeloft
