// For the views.
#pragma once

#include "PanelContent.h"

#import <AppKit/AppKit.h>

NS_ASSUME_NONNULL_BEGIN

namespace wakeloft {

/// The glyph, the title beside it and the status line below; to VoiceOver one element, in words.
class PanelHeader {
  public:
    PanelHeader();

    void setContent(const PanelContent& content);
    [[nodiscard]] NSView* view() const { return row_; }

  private:
    MenuBarIcon icon_;
    NSImageView* glyph_;
    NSTextField* title_;
    NSTextField* statusLine_;
    NSStackView* row_;
};

} // namespace wakeloft

NS_ASSUME_NONNULL_END
