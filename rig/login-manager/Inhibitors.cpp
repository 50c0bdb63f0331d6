#include "Inhibitors.h"

#include <fcntl.h>
#include <sys/epoll.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <utility>

namespace wakeloft::rig {

Inhibitors::~Inhibitors() {
    while (!entries_.empty()) {
        remove(entries_.front());
    }
}

int Inhibitors::add(Inhibitor inhibitor) {
    // The holder gets the writing end: when the last copy of it closes, the reading end hangs up.
    std::array<int, 2> ends = {-1, -1};
    if (pipe2(ends.data(), O_CLOEXEC | O_NONBLOCK) < 0) {
        return -errno;
    }
    Entry& entry = entries_.emplace_back(
        Entry{.owner = this, .inhibitor = std::move(inhibitor), .descriptor = ends[0], .released = nullptr});
    sd_event_source* source = nullptr;
    const int result = sd_event_add_io(event_, &source, ends[0], EPOLLHUP, isReleased, &entry);
    entry.released.reset(source);
    if (result < 0) {
        close(ends[1]);
        remove(entry);
        return result;
    }
    changed_();
    return ends[1];
}

InhibitorWhat Inhibitors::heldBy(bool isBlock) const {
    InhibitorWhat set = InhibitorWhat::none;
    forEach([&](const Inhibitor& inhibitor) {
        if (inhibitor.isBlock == isBlock) {
            set = set | inhibitor.what;
        }
    });
    return set;
}

int Inhibitors::isReleased(sd_event_source*, int, std::uint32_t, void* userData) {
    const auto& entry = *static_cast<Entry*>(userData);
    Inhibitors& self = *entry.owner;
    self.remove(entry);
    self.changed_();
    return 0;
}

void Inhibitors::remove(const Entry& entry) {
    const int descriptor = entry.descriptor;
    entries_.remove_if([&](const Entry& other) { return &other == &entry; });
    close(descriptor);
}

} // namespace wakeloft::rig
