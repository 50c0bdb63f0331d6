#include "TerminationSignals.h"

#include <csignal>
#include <utility>

namespace wakeloft {

std::expected<std::unique_ptr<TerminationSignals>, PlatformError>
TerminationSignals::watch(sd_event* event, std::function<void()> received) {
    auto watcher = std::make_unique<TerminationSignals>();
    watcher->received_ = std::move(received);
    constexpr std::array signals = {SIGTERM, SIGINT, SIGHUP};
    for (std::size_t index = 0; index < signals.size(); ++index) {
        sd_event_source* source = nullptr;
        const auto handler = [](sd_event_source*, const signalfd_siginfo*, void* userdata) {
            static_cast<TerminationSignals*>(userdata)->received_();
            return 0;
        };
        const int result = sd_event_add_signal(event, &source, signals[index] | SD_EVENT_SIGNAL_PROCMASK,
                                               handler, watcher.get());
        if (result < 0)
            return std::unexpected(busFailure("The signals that end the program cannot be handled", result));
        watcher->sources_[index].reset(source);
    }
    return watcher;
}

} // namespace wakeloft
