// For the views.
#pragma once

#include "ActionButton.h"

#import <AppKit/AppKit.h>

#include <deque>
#include <vector>

NS_ASSUME_NONNULL_BEGIN

namespace wakeloft {

/// Small buttons of the same width beside each other, or below each other where their titles need the room.
class ButtonRow {
  public:
    ButtonRow(ActionButton::Perform perform, CGFloat width);

    void setContent(const std::vector<PanelButton>& content);
    [[nodiscard]] NSView* view() const { return stack_; }

  private:
    struct Cell {
        ActionButton button;
        NSLayoutConstraint* width;

        explicit Cell(const ActionButton::Perform& perform);
    };
    void place(std::size_t count);

    ActionButton::Perform perform_;
    CGFloat width_;
    std::deque<Cell> cells_; ///< grows only: a click must not end its button
    NSStackView* stack_;
};

} // namespace wakeloft

NS_ASSUME_NONNULL_END
