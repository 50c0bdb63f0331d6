#pragma once

#include "lease/LidLeaseListener.h"

#include <memory>

namespace wakeloft {

/// Listens on the helper's mach service, and lets in only code that meets the caller requirement.
class LidLeaseXPCListener {
  public:
    explicit LidLeaseXPCListener(std::shared_ptr<LidLeaseListener> listener);
    LidLeaseXPCListener(const LidLeaseXPCListener&) = delete;
    LidLeaseXPCListener& operator=(const LidLeaseXPCListener&) = delete;
    ~LidLeaseXPCListener();

    /// Connections are accepted from then on.
    void resume();

  private:
    struct Implementation;
    std::unique_ptr<Implementation> implementation_;
};

} // namespace wakeloft
