#pragma once

#include "support/Error.h"

#include <QSocketNotifier>

#include <expected>
#include <functional>
#include <memory>

struct xcb_connection_t;

namespace wakeloft {

/// Tells every press and release of a mouse button anywhere on an X11 display, other programs' windows and
/// the bare background included, without taking it from anyone. Wheel turns do not count. Works only while
/// started, over a connection of its own. Main thread.
class OutsidePress {
  public:
    struct Events {
        std::function<void()> pressed;
        std::function<void()> released;
    };

    explicit OutsidePress(Events events);

    [[nodiscard]] bool isStarted() const { return connection_ != nullptr; }
    std::expected<void, PlatformError> start();
    /// Also from within an event.
    void stop();

  private:
    struct Disconnect {
        void operator()(xcb_connection_t* connection) const;
    };

    void readEvents();

    Events events_;
    std::unique_ptr<xcb_connection_t, Disconnect> connection_;
    std::unique_ptr<QSocketNotifier> readable_;
    int extensionOpcode_ = 0;
};

} // namespace wakeloft
