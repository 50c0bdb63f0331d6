// For the views.
#pragma once

#include "ActionHandler.h"
#include "PanelContent.h"

#import <AppKit/AppKit.h>

NS_ASSUME_NONNULL_BEGIN

namespace wakeloft {

/// Draws a `PanelSwitch`: its title, the switch at the far end, and the footnote below. It shows the state
/// that it was given and never one of its own: a click only hands the action on.
class SwitchRow {
  public:
    using Perform = std::function<void(const PanelAction&)>;

    SwitchRow(NSControlSize size, Perform perform, CGFloat width);
    SwitchRow(const SwitchRow&) = delete;
    SwitchRow& operator=(const SwitchRow&) = delete;
    ~SwitchRow() = default;

    void setContent(const PanelSwitch& content);
    [[nodiscard]] NSView* view() const { return rows_; }

  private:
    void showState();

    PanelSwitch content_;
    NSTextField* title_;
    NSSwitch* switch_;
    NSTextField* footnote_;
    NSStackView* rows_;
    ActionHandler* flipped_;
};

} // namespace wakeloft

NS_ASSUME_NONNULL_END
