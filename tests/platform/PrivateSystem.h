#pragma once

#include "SdEventMainRunLoop.h"
#include "support/ChildProcess.h"
#include "support/PrivateBus.h"

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace wakeloft {

/// A private bus that this process takes for the system's, and the embedded login manager on it.
struct PrivateSystem {
    PrivateSystem();

    void startLoginManager(const std::vector<std::string>& options = {});
    /// Looks again and again: what others do changes without a word to this loop.
    bool waitFor(const std::function<bool()>& condition, int mostLooks = 500);
    void pass(int milliseconds);
    bool isOwned(const char* name);
    /// A lock that another process holds, once it is listed.
    std::unique_ptr<ChildProcess> otherLock(const std::string& what, const std::string& who,
                                            const std::string& mode = "block");
    PrivateBus bus;
    std::unique_ptr<SdEventMainRunLoop> loop = std::move(SdEventMainRunLoop::create().value());
    sd_event* event = loop->event();
    BusPointer observer = bus.connect(event);
    std::unique_ptr<ChildProcess> loginManager;
};

} // namespace wakeloft
