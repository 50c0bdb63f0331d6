#pragma once

#include "NoticeRow.h"

#include <vector>

namespace wakeloft {

/// Notices one below the other.
class NoticeList : public QWidget {
  public:
    NoticeList(ActionButton::Perform perform, QWidget* parent);

    void setContent(const std::vector<PanelNotice>& content);
    [[nodiscard]] int heightForWidth(int width) const override;

    /// The links that are shown, in reading order.
    [[nodiscard]] std::vector<ActionButton*> links() const;

  protected:
    void resizeEvent(QResizeEvent* event) override;

  private:
    void place();

    ActionButton::Perform perform_;
    std::vector<NoticeRow*> rows_; // the surplus stays hidden: one may be in the middle of its own click
    size_t count_ = 0;
};

} // namespace wakeloft
