#pragma once

#include "support/Error.h"

#include <QObject>
#include <QSocketNotifier>

#include <cstdint>
#include <expected>
#include <functional>
#include <memory>
#include <vector>

struct xcb_connection_t;

namespace wakeloft {

/// Tells presses and releases of a mouse button anywhere on an X11 display, other programs' windows and the
/// bare background included, without taking them from anyone. Wheel turns do not count, nor a press that a
/// window of this program has heard of before. Works only while started, over a connection of its own. Main
/// thread.
class OutsidePress : private QObject {
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
    bool isOwn(std::uint64_t pressTime);
    /// Notes the presses that the toolkit hands to windows of this program. The two connections to the
    /// display are heard in either order: without this a choice in a menu, which closes it, could look like a
    /// press outside when the machine is busy.
    bool eventFilter(QObject* receiver, QEvent* event) override;

    Events events_;
    /// Their times by the display's clock, in milliseconds, which both connections tell alike.
    std::vector<std::uint64_t> ownPresses_;
    std::unique_ptr<xcb_connection_t, Disconnect> connection_;
    std::unique_ptr<QSocketNotifier> readable_;
    int extensionOpcode_ = 0;
};

} // namespace wakeloft
