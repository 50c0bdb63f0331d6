#pragma once

#include "Bus.h"

#include <array>
#include <functional>

namespace wakeloft {

/// Turns SIGTERM, SIGINT and SIGHUP into a call on the main loop. Make it before any thread is started, so
/// that all threads leave the signals to it. Main thread.
class TerminationSignals {
  public:
    static std::expected<std::unique_ptr<TerminationSignals>, PlatformError>
    watch(sd_event* event, std::function<void()> received);

  private:
    std::function<void()> received_;
    std::array<EventSource, 3> sources_;
};

} // namespace wakeloft
