// For the views.
#pragma once

#include "ActionHandler.h"
#include "SettingsContent.h"

#import <AppKit/AppKit.h>

NS_ASSUME_NONNULL_BEGIN

namespace wakeloft {

/// The row at the panel's foot that opens the settings menu. Clicks count in all of it.
class SettingsButton {
  public:
    SettingsButton(std::function<void()> clicked, CGFloat width);

    void setContent(const SettingsMenuContent& content);
    [[nodiscard]] NSView* view() const { return row_; }
    /// Lies under the button, as large, with y growing upwards: where menu and popovers open.
    [[nodiscard]] NSView* anchor() const { return anchor_; }

  private:
    NSView* row_;
    NSView* anchor_;
    NSButton* button_;
    NSImageView* chevron_;
    ActionHandler* clicked_;
};

} // namespace wakeloft

NS_ASSUME_NONNULL_END
