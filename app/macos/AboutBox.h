// For the views.
#pragma once

#include "SettingsContent.h"

#import <AppKit/AppKit.h>

NS_ASSUME_NONNULL_BEGIN

namespace wakeloft {

/// Draws `content`: centred, one below the other.
NSView* aboutBox(const AboutPopupContent& content);

} // namespace wakeloft

NS_ASSUME_NONNULL_END
