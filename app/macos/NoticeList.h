// For the views.
#pragma once

#include "ActionButton.h"

#import <AppKit/AppKit.h>

#include <deque>
#include <vector>

NS_ASSUME_NONNULL_BEGIN

namespace wakeloft {

/// Draws a `PanelNotice`: a symbol, the text beside it and the link below the text.
class NoticeRow {
  public:
    NoticeRow(const ActionButton::Perform& perform, CGFloat width);

    void setContent(const PanelNotice& content);
    [[nodiscard]] NSView* view() const { return grid_; }

  private:
    NSImageView* symbol_;
    NSTextField* text_;
    ActionButton link_;
    NSGridView* grid_;
};

/// The notices of one part of the panel; hidden where there are none.
class NoticeList {
  public:
    NoticeList(ActionButton::Perform perform, CGFloat width);

    void setContent(const std::vector<PanelNotice>& content);
    [[nodiscard]] NSView* view() const { return rows_; }

  private:
    ActionButton::Perform perform_;
    CGFloat width_;
    std::deque<NoticeRow> notices_; ///< grows only: a click must not end its link
    NSStackView* rows_;
};

} // namespace wakeloft

NS_ASSUME_NONNULL_END
