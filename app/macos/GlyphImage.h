// For the views.
#pragma once

#include "status/TemplateImage.h"

#import <AppKit/AppKit.h>

#include <string>

NS_ASSUME_NONNULL_BEGIN

namespace wakeloft {

/// `image` as a template: it takes the colour of whatever shows it.
NSImage* templateImage(const TemplateImage& image);

/// The system's symbol of that name, as large as beside a text of `pointSize`; our own drawing of it where
/// the system has none.
NSImage* symbolImage(const std::string& name, CGFloat pointSize);
/// The same in one colour, whatever shows it.
NSImage* symbolImage(const std::string& name, CGFloat pointSize, NSColor* color);

/// Shows an image at its own size, in the middle. It says nothing to VoiceOver, as the words beside it do,
/// and leaves clicks to what lies below.
NSImageView* silentImageView();

} // namespace wakeloft

NS_ASSUME_NONNULL_END
