#include "simulation/VirtualTime.h"

#include <algorithm>
#include <utility>

namespace wakeloft {

void VirtualTime::performAfter(Seconds seconds, std::function<void()> work) {
    events_.push_back(
        {uptime_ + (seconds > 0 ? seconds : 0), false, ++lastNumber_, {}, false, std::move(work)});
}

std::shared_ptr<void> VirtualTime::startTimer(Seconds seconds, std::function<void()> work) {
    auto token = std::make_shared<int>(0);
    events_.push_back({sinceBoot_ + seconds, true, ++lastNumber_, token, true, std::move(work)});
    return token;
}

Seconds VirtualTime::remaining(const Event& event) const {
    return std::max(0.0, event.due - (event.countsSleep ? sinceBoot_ : uptime_));
}

bool VirtualTime::runNext(Seconds within, const std::function<void()>& afterEach) {
    std::erase_if(events_, [](const Event& event) { return event.isTimer && event.alive.expired(); });
    const auto next = std::ranges::min_element(events_, [this](const Event& one, const Event& other) {
        return std::pair(remaining(one), one.number) < std::pair(remaining(other), other.number);
    });
    if (next == events_.end() || remaining(*next) > within)
        return false;
    spend(remaining(*next));
    const auto work = std::move(next->work);
    events_.erase(next);
    work();
    afterEach();
    return true;
}

void VirtualTime::pass(Seconds seconds, const std::function<void()>& afterEach) {
    const Seconds end = uptime_ + seconds;
    while (runNext(std::max(0.0, end - uptime_), afterEach)) {
    }
    if (end > uptime_)
        spend(end - uptime_);
}

void VirtualTime::spend(Seconds seconds) {
    uptime_ += seconds;
    sleep(seconds);
}

void VirtualTime::sleep(Seconds seconds) {
    wall_ += seconds;
    sinceBoot_ += seconds;
}

} // namespace wakeloft
