#include "AboutPopup.h"

#include <utility>

namespace wakeloft {

AboutPopup::AboutPopup(const Localizer& localizer, std::optional<AboutInfo> info, const DateProvider& dates,
                       const TimeZone& timeZone)
    : localizer_(localizer), info_(std::move(info)), dates_(dates), timeZone_(timeZone) {}

AboutPopupContent AboutPopup::content() const {
    AboutPopupContent content;
    content.isRightToLeft = localizer_.isRightToLeft();
    content.title = localizer_.text("Wakeloft");
    if (info_) {
        auto version = info_->formattedVersion();
        if (content.isRightToLeft)
            version = isolatedLeftToRight(version);
        content.version =
            filled(localizer_.text("Version {formattedVersion}"), "{formattedVersion}", version);
    }
    const int year = AboutInfo::copyrightYearOn(dates_.now(), timeZone_);
    content.copyright = "© " + std::to_string(year) + " " + WAKELOFT_AUTHOR;
    return content;
}

} // namespace wakeloft
