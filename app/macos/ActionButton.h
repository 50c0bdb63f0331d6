// For the views.
#pragma once

#include "ActionHandler.h"
#include "PanelContent.h"

#import <AppKit/AppKit.h>

NS_ASSUME_NONNULL_BEGIN

namespace wakeloft {

/// Draws a `PanelButton`.
class ActionButton {
  public:
    /// `main` is prominent, and the return key presses it.
    enum class Kind { main, small, link };
    using Perform = std::function<void(const PanelAction&)>;

    ActionButton(Kind kind, Perform perform);
    ActionButton(const ActionButton&) = delete;
    ActionButton& operator=(const ActionButton&) = delete;
    ~ActionButton() = default;

    void setContent(const PanelButton& content);
    [[nodiscard]] NSButton* view() const { return button_; }

  private:
    PanelAction action_;
    NSButton* button_;
    ActionHandler* clicked_;
};

} // namespace wakeloft

NS_ASSUME_NONNULL_END
