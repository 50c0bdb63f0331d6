// Between our values and Foundation's, for .mm files.
#pragma once

#include "CoreFoundationText.h"
#include "support/Error.h"

#import <Foundation/Foundation.h>

#include <string>

namespace wakeloft {

inline NSString* _Nonnull foundationText(const std::string& text) {
    return (__bridge_transfer NSString* _Nonnull)coreFoundationText(text).release();
}

inline std::string plainText(NSString* _Nonnull text) {
    return plainText((__bridge CFStringRef)text);
}

inline PlatformError platformError(NSError* _Nonnull error) {
    return {plainText(error.domain), error.code, plainText(error.localizedDescription)};
}

} // namespace wakeloft
