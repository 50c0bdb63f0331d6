#pragma once

#include "Bus.h"

namespace wakeloft {

/// One link that the desktop portal is asked to open. Ending it drops the answer. Main thread.
class OpenUriRequest {
  public:
    /// `finished` gets the outcome in a later turn, and may end the request. A user who was asked for a
    /// program and declined is no failure.
    static std::expected<std::unique_ptr<OpenUriRequest>, PlatformError>
    send(sd_bus* sessionBus, const std::string& address,
         std::function<void(std::expected<void, PlatformError>)> finished);

  private:
    BusSlot response_;
    BusSlot reply_;
};

} // namespace wakeloft
