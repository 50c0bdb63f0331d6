#include "SdEventMainRunLoop.h"

#include <sys/epoll.h>
#include <sys/eventfd.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <mutex>
#include <utility>
#include <vector>

namespace wakeloft {

namespace {

struct EventDeleter {
    void operator()(sd_event* event) const { sd_event_unref(event); }
};

struct Work {
    Seconds delay = 0;
    std::function<void()> run;
};

/// Runs once on the loop and frees itself, also when the loop ends first.
void startTimer(sd_event* event, Work work) {
    constexpr Seconds longest = 1e9;
    const auto microseconds = static_cast<std::uint64_t>(std::min(work.delay, longest) * 1e6);
    auto owned = std::make_unique<std::function<void()>>(std::move(work.run));
    sd_event_source* source = nullptr;
    const auto fired = [](sd_event_source*, std::uint64_t, void* userdata) {
        (*static_cast<std::function<void()>*>(userdata))();
        return 0;
    };
    if (sd_event_add_time_relative(event, &source, CLOCK_MONOTONIC, microseconds, 1, fired, owned.get()) <
        0) {
        std::fputs("Wakeloft: a delayed task could not be scheduled; it runs at once.\n", stderr);
        (*owned)();
        return;
    }
    sd_event_source_set_destroy_callback(
        source, [](void* userdata) { delete static_cast<std::function<void()>*>(userdata); });
    owned.release(); // NOLINT(bugprone-unused-return-value): the source's userdata, freed above
    sd_event_source_set_floating(source, 1);
    sd_event_source_unref(source);
}

} // namespace

struct SdEventMainRunLoop::Implementation {
    std::unique_ptr<sd_event, EventDeleter> event;
    EventSource wake;
    int wakeDescriptor = -1;
    std::mutex mutex;
    std::vector<Work> queue; ///< under `mutex`

    ~Implementation() {
        wake.reset();
        if (wakeDescriptor >= 0)
            close(wakeDescriptor);
    }

    void add(Work work) {
        {
            const std::lock_guard lock(mutex);
            queue.push_back(std::move(work));
        }
        const std::uint64_t one = 1;
        // Fails only when the counter is full, and then the loop is awake already.
        static_cast<void>(!write(wakeDescriptor, &one, sizeof one));
    }

    void runQueue() {
        std::uint64_t count = 0;
        static_cast<void>(!read(wakeDescriptor, &count, sizeof count)); // empties the counter
        std::vector<Work> work;
        {
            const std::lock_guard lock(mutex);
            work.swap(queue);
        }
        for (auto& each : work) {
            if (each.delay > 0)
                startTimer(event.get(), std::move(each));
            else
                each.run();
        }
    }
};

std::expected<std::unique_ptr<SdEventMainRunLoop>, PlatformError> SdEventMainRunLoop::create() {
    auto implementation = std::make_unique<Implementation>();
    sd_event* event = nullptr;
    int result = sd_event_new(&event);
    implementation->event.reset(event);
    if (result >= 0) {
        implementation->wakeDescriptor = eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK);
        result = implementation->wakeDescriptor < 0 ? -errno : 0;
    }
    sd_event_source* source = nullptr;
    if (result >= 0)
        result = sd_event_add_io(
            event, &source, implementation->wakeDescriptor, EPOLLIN,
            [](sd_event_source*, int, std::uint32_t, void* userdata) {
                static_cast<Implementation*>(userdata)->runQueue();
                return 0;
            },
            implementation.get());
    implementation->wake.reset(source);
    if (result < 0)
        return std::unexpected(busFailure("The event loop cannot be set up", result));
    return std::unique_ptr<SdEventMainRunLoop>(new SdEventMainRunLoop(std::move(implementation)));
}

SdEventMainRunLoop::SdEventMainRunLoop(std::unique_ptr<Implementation> implementation)
    : implementation_(std::move(implementation)) {}

SdEventMainRunLoop::~SdEventMainRunLoop() = default;

void SdEventMainRunLoop::perform(std::function<void()> work) {
    implementation_->add({0, std::move(work)});
}

void SdEventMainRunLoop::performAfter(Seconds seconds, std::function<void()> work) {
    implementation_->add({seconds > 0 ? seconds : 0, std::move(work)});
}

sd_event* SdEventMainRunLoop::event() const {
    return implementation_->event.get();
}

} // namespace wakeloft
