#include "SystemDeadlineRecheckNotifier.h"

#include "WakeSignal.h"

#include <sys/epoll.h>
#include <sys/timerfd.h>
#include <unistd.h>

#include <cerrno>
#include <utility>

namespace wakeloft {

SystemDeadlineRecheckNotifier::SystemDeadlineRecheckNotifier(sd_event* event, BusConnection& systemBus,
                                                             std::function<void(const PlatformError&)> failed)
    : event_(event), systemBus_(systemBus), failed_(std::move(failed)) {}

SystemDeadlineRecheckNotifier::~SystemDeadlineRecheckNotifier() {
    clockSource_.reset();
    if (clockDescriptor_ >= 0)
        close(clockDescriptor_);
}

void SystemDeadlineRecheckNotifier::observe(std::function<void()> handler) {
    const bool isFirst = handler_ == nullptr;
    handler_ = std::move(handler);
    if (!isFirst)
        return;
    watchWakes();
    reopened_ = systemBus_.reopened().subscribe([this] { watchWakes(); });
    watchClock();
}

void SystemDeadlineRecheckNotifier::watchWakes() {
    auto bus = systemBus_.bus();
    if (!bus) {
        failed_(bus.error());
        return;
    }
    auto slot = watchWakeSignal(*bus, [this] { tell(); });
    if (slot)
        wakeSlot_ = std::move(*slot);
    else
        failed_(slot.error());
}

// A timer far in the future that the kernel cancels whenever the wall clock is set.
void SystemDeadlineRecheckNotifier::watchClock() {
    clockDescriptor_ = timerfd_create(CLOCK_REALTIME, TFD_CLOEXEC | TFD_NONBLOCK);
    int result = clockDescriptor_ < 0 ? -errno : armClock();
    sd_event_source* source = nullptr;
    if (result >= 0)
        result = sd_event_add_io(
            event_, &source, clockDescriptor_, EPOLLIN,
            [](sd_event_source*, int, std::uint32_t, void* userdata) {
                static_cast<SystemDeadlineRecheckNotifier*>(userdata)->clockWasSet();
                return 0;
            },
            this);
    clockSource_.reset(source);
    if (result < 0)
        failed_(busFailure("Changes of the clock cannot be followed", result));
}

int SystemDeadlineRecheckNotifier::armClock() const {
    itimerspec farAway{};
    farAway.it_value.tv_sec = 64'092'211'200; // the year 4001
    const int flags = TFD_TIMER_ABSTIME | TFD_TIMER_CANCEL_ON_SET;
    // ECANCELED: the clock was set again since the last look, which whoever armed it goes on to tell.
    return timerfd_settime(clockDescriptor_, flags, &farAway, nullptr) < 0 && errno != ECANCELED ? -errno : 0;
}

void SystemDeadlineRecheckNotifier::clockWasSet() {
    std::uint64_t expirations = 0;
    static_cast<void>(
        !read(clockDescriptor_, &expirations, sizeof expirations)); // ECANCELED: the clock was set
    if (const int result = armClock(); result < 0) {
        clockSource_.reset();
        failed_(busFailure("Changes of the clock cannot be followed", result));
    }
    tell();
}

void SystemDeadlineRecheckNotifier::tell() const {
    const auto handler = handler_; // it may set another
    handler();
}

} // namespace wakeloft
