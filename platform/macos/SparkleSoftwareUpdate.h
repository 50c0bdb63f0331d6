#pragma once

#include "preferences/SoftwareUpdate.h"

#include <memory>

namespace wakeloft {

/// Sparkle with its own windows. What it looks for, and whom it trusts, is in the bundle's property list.
class SparkleSoftwareUpdate final : public SoftwareUpdate {
  public:
    /// Starts the updater: from then on it also looks by itself, where the user allows it.
    SparkleSoftwareUpdate();
    SparkleSoftwareUpdate(const SparkleSoftwareUpdate&) = delete;
    SparkleSoftwareUpdate& operator=(const SparkleSoftwareUpdate&) = delete;
    ~SparkleSoftwareUpdate() override;

    void checkForUpdates() override;
    void observeRelaunch(std::function<void()> relaunching) override;

  private:
    struct Updater;
    std::unique_ptr<Updater> updater_;
};

} // namespace wakeloft
