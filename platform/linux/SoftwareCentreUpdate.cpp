#include "SoftwareCentreUpdate.h"

#include <utility>

namespace wakeloft {

SoftwareCentreUpdate::SoftwareCentreUpdate(LinkOpener& opener, std::string identifier,
                                           LinkOpener::Failed failed)
    : opener_(opener), identifier_(std::move(identifier)), failed_(std::move(failed)) {}

void SoftwareCentreUpdate::checkForUpdates() {
    opener_.open("appstream://" + identifier_, failed_);
}

} // namespace wakeloft
