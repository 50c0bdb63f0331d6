#pragma once

#include "LinkOpener.h"
#include "preferences/SoftwareUpdate.h"

namespace wakeloft {

/// Updates come from where the program was installed from: opens its page in the software centre.
/// That lets the app run on, so it never tells of a relaunch. Main thread.
class SoftwareCentreUpdate final : public SoftwareUpdate {
  public:
    /// `opener` must outlive the object. `identifier` is the program's in the software centre. `failed` is
    /// told why nothing came up.
    SoftwareCentreUpdate(LinkOpener& opener, std::string identifier, LinkOpener::Failed failed);

    void checkForUpdates() override;

  private:
    LinkOpener& opener_;
    std::string identifier_;
    LinkOpener::Failed failed_;
};

} // namespace wakeloft
