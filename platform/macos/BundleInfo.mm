#include "BundleInfo.h"

#include "FoundationText.h"
#include "FoundationValue.h"

namespace wakeloft {

std::optional<InfoDictionary> bundleInfo() {
    NSDictionary<NSString*, id>* dictionary = NSBundle.mainBundle.infoDictionary;
    if (dictionary == nil)
        return std::nullopt;
    InfoDictionary info;
    for (NSString* key in dictionary)
        if (id value = dictionary[key])
            info.emplace(plainText(key), fromFoundation(value));
    return info;
}

OperatingSystemVersion systemVersion() {
    const NSOperatingSystemVersion version = NSProcessInfo.processInfo.operatingSystemVersion;
    return {static_cast<int>(version.majorVersion), static_cast<int>(version.minorVersion),
            static_cast<int>(version.patchVersion)};
}

} // namespace wakeloft
