#pragma once

#include "support/MainRunLoop.h"

namespace wakeloft {

/// Core Foundation's main run loop, in the modes in which menus and alerts run it too. Something must run it.
class CFMainRunLoop final : public MainRunLoop {
  public:
    void perform(std::function<void()> work) override;
    void performAfter(Seconds seconds, std::function<void()> work) override;
};

} // namespace wakeloft
