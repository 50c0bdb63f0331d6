#pragma once

#include "Bus.h"

#include <functional>
#include <string>

namespace wakeloft {

/// Tells that the file at a path may be another one than before: written, replaced, removed or back, be it
/// with its folder. The kernel tells it; nothing is polled. A file that is being made counts once it is
/// closed. Not noticed are the target of a symbolic link, and a folder further up that is moved away while
/// the file's own stays in it. Main thread.
class FileChanges {
  public:
    /// `path` is absolute. `changed` may be told more often than something changed; `failed` is told when
    /// changes can no longer be followed. `event` must outlive this.
    FileChanges(sd_event* event, std::string path, std::function<void()> changed,
                std::function<void(const PlatformError&)> failed);
    FileChanges(const FileChanges&) = delete;
    FileChanges& operator=(const FileChanges&) = delete;
    ~FileChanges() = default;

    /// Changes are told from then on. The folder need not be there yet.
    std::expected<void, PlatformError> start();

  private:
    static int happened(sd_event_source* source, const inotify_event* change, void* userdata);
    int await(const std::string& awaited);
    int follow(const std::string& folder, std::uint32_t changes, EventSource& source);

    sd_event* event_;
    std::string path_;
    std::string awaited_; ///< the file, or where its folder is missing the first one that is
    std::function<void()> changed_;
    std::function<void(const PlatformError&)> failed_;
    EventSource folder_; ///< that what is awaited is in
    EventSource above_;
};

} // namespace wakeloft
