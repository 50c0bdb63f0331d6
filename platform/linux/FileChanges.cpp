#include "FileChanges.h"

#include <sys/inotify.h>
#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <string_view>
#include <utility>

namespace wakeloft {

namespace {

/// The folder that a file or folder is in; the root is in itself.
std::string folderOf(const std::string& path) {
    return path.substr(0, std::max<std::size_t>(path.rfind('/'), 1));
}

std::string_view nameOf(const std::string& path) {
    return std::string_view(path).substr(path.rfind('/') + 1);
}

bool isFolder(const std::string& path) {
    struct stat status{};
    return stat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode);
}

} // namespace

FileChanges::FileChanges(sd_event* event, std::string path, std::function<void()> changed,
                         std::function<void(const PlatformError&)> failed)
    : event_(event), path_(std::move(path)), changed_(std::move(changed)), failed_(std::move(failed)) {}

std::expected<void, PlatformError> FileChanges::start() {
    auto awaited = path_;
    int result = await(awaited);
    while ((result == -ENOENT || result == -ENOTDIR) && awaited != "/") {
        awaited = folderOf(awaited);
        result = await(awaited);
        // What was missing may have come before it was awaited.
        if (result >= 0 && isFolder(awaited)) {
            awaited = path_;
            result = await(awaited);
        }
    }
    if (result < 0)
        return std::unexpected(busFailure("Changes of " + path_ + " cannot be followed", result));
    return {};
}

// The folder's own end is told by the one above it: a program that runs keeps the folder that it was started
// from alive, and with it the watch, also when neither has a name any more.
int FileChanges::await(const std::string& awaited) {
    const auto folder = folderOf(awaited);
    EventSource inside;
    EventSource above;
    int result = follow(folder, awaited == path_ ? IN_CLOSE_WRITE : IN_CREATE, inside);
    if (result >= 0 && folder != "/")
        result = follow(folderOf(folder), IN_CREATE, above);
    if (result < 0)
        return result;
    folder_ = std::move(inside);
    above_ = std::move(above);
    awaited_ = awaited;
    return 0;
}

int FileChanges::follow(const std::string& folder, std::uint32_t changes, EventSource& source) {
    changes |= IN_MOVED_TO | IN_MOVED_FROM | IN_DELETE | IN_DELETE_SELF | IN_MOVE_SELF | IN_ONLYDIR;
    sd_event_source* added = nullptr;
    const int result = sd_event_add_inotify(event_, &added, folder.c_str(), changes, happened, this);
    source.reset(added);
    return result;
}

int FileChanges::happened(sd_event_source*, const inotify_event* change, void* userdata) {
    auto& self = *static_cast<FileChanges*>(userdata);
    // Without a name it is about a folder as a whole, or changes were lost.
    const std::string_view name = change->len == 0 ? "" : change->name;
    if (!name.empty() && name != nameOf(self.awaited_) && name != nameOf(folderOf(self.awaited_)))
        return 0;
    if (const auto followed = self.start(); !followed)
        self.failed_(followed.error());
    self.changed_();
    return 0;
}

} // namespace wakeloft
