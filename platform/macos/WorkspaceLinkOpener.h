#pragma once

#include "support/Error.h"
#include "support/Lifetime.h"
#include "support/MainRunLoop.h"

#include <functional>
#include <string>

namespace wakeloft {

/// Hands links to the program that the user has for them. Main thread.
class WorkspaceLinkOpener {
  public:
    using Failed = std::function<void(const PlatformError&)>;

    /// `loop` must outlive whatever was opened.
    explicit WorkspaceLinkOpener(MainRunLoop& loop) : loop_(loop) {}

    /// `failed` is told at once or later, while the opener lives, why the link could not be handed over.
    void open(const std::string& address, Failed failed);

  private:
    MainRunLoop& loop_;
    Lifetime lifetime_;
};

} // namespace wakeloft
