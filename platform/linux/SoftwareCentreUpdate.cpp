#include "SoftwareCentreUpdate.h"

#include <utility>

namespace wakeloft {

SoftwareCentreUpdate::SoftwareCentreUpdate(LinkOpener& opener, std::string identifier,
                                           LinkOpener::Failed failed)
    : opener_(opener), identifier_(std::move(identifier)), failed_(std::move(failed)) {}

void SoftwareCentreUpdate::checkForUpdates() {
    opener_.open("appstream://" + identifier_, [failed = failed_](const PlatformError& why) {
        failed({why.domain, why.code,
                "No software centre came up. Update Wakeloft in the way that you installed it. " +
                    why.description});
    });
}

} // namespace wakeloft
