#pragma once

#include <functional>

namespace wakeloft {

/// Looks for a newer version of the app. Main thread.
class SoftwareUpdate {
  public:
    virtual ~SoftwareUpdate() = default;

    /// The user asks for it; what is found, or went wrong, is shown by the implementation.
    virtual void checkForUpdates() = 0;

    /// `relaunching` is told right before the app ends to be opened again as the new version, so that nobody
    /// asks whether to quit. Only the latest observer is told. An updater that lets the app run on never
    /// tells.
    virtual void observeRelaunch(std::function<void()> relaunching) { static_cast<void>(relaunching); }
};

} // namespace wakeloft
