#include "LeaseFileWatch.h"

#include "lease/RigLeaseFile.h"

#include <filesystem>
#include <utility>

namespace wakeloft::rig {

LeaseFileWatch::LeaseFileWatch(sd_event* event, std::string path, std::function<void(LeaseState)> changed,
                               std::function<void(const PlatformError&)> failed)
    : path_(std::move(path)),
      changed_(std::move(changed)),
      timer_(event, dates_),
      changes_(event, std::filesystem::absolute(path_).string(), [this] { look(); }, std::move(failed)) {}

std::expected<void, PlatformError> LeaseFileWatch::start() {
    auto started = changes_.start();
    if (started)
        look();
    return started;
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
