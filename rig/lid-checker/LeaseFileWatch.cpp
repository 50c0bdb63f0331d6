#include "LeaseFileWatch.h"

#include "lease/RigLeaseFile.h"

#include <sys/inotify.h>

#include <filesystem>
#include <string_view>
#include <utility>

namespace wakeloft::rig {

LeaseFileWatch::LeaseFileWatch(sd_event* event, std::string path, std::function<void(LeaseState)> changed)
    : event_(event), path_(std::move(path)), changed_(std::move(changed)), timer_(event, dates_) {}

std::expected<void, PlatformError> LeaseFileWatch::start() {
    const auto folder = std::filesystem::absolute(path_).parent_path();
    const auto happened = [](sd_event_source*, const inotify_event* change, void* userdata) {
        auto& self = *static_cast<LeaseFileWatch*>(userdata);
        // Without a name it is about the folder, or changes were lost.
        if (change->len == 0 ||
            std::filesystem::path(self.path_).filename() == std::string_view(change->name))
            self.look();
        return 0;
    };
    sd_event_source* source = nullptr;
    const int result = sd_event_add_inotify(
        event_, &source, folder.c_str(), IN_CLOSE_WRITE | IN_MOVED_TO | IN_MOVED_FROM | IN_DELETE | IN_CREATE,
        happened, this);
    folder_.reset(source);
    if (result < 0)
        return std::unexpected(busFailure("The lease file's folder cannot be followed", result));
    look();
    return {};
}

void LeaseFileWatch::look() {
    const auto end = RigLeaseFile::readAt(path_);
    const bool isHeld = end && dates_.now() < *end;
    const auto state = !end ? LeaseState::missing : isHeld ? LeaseState::held : LeaseState::lapsed;
    if (isHeld)
        timer_.scheduleAt(*end, [this] { look(); });
    else
        timer_.cancel();
    if (state != std::exchange(told_, state))
        changed_(state);
}

} // namespace wakeloft::rig
