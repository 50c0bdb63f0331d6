#pragma once

#include "Program.h"

#include <cstdint>
#include <memory>
#include <utility>

struct xcb_connection_t;

namespace wakeloft {

/// Sees what programs draw in the windows that they make from now on, on the display that DISPLAY names.
class DrawingWatch {
  public:
    DrawingWatch();

    struct Drawing {
        Clock::time_point end; ///< when the last of it arrived here
        int width;             ///< of the largest piece, in pixels
        int height;
    };
    /// Returns when something has been drawn and then nothing more for a third of a second.
    Drawing waitForDrawing();

  private:
    struct Close {
        void operator()(xcb_connection_t* connection) const;
    };

    void watch(std::uint32_t window);

    std::unique_ptr<xcb_connection_t, Close> connection_;
    std::uint8_t damageEvent_ = 0;
};

} // namespace wakeloft
