#pragma once

#include "ActionButton.h"
#include "TextLabel.h"

#include <QWidget>

namespace wakeloft {

/// Draws a `PanelNotice`: a symbol, the text beside it and the link below the text.
class NoticeRow : public QWidget {
  public:
    /// Empty space at both sides; the link's padding reaches into it.
    static constexpr int sideMargin = ActionButton::linkPadding;

    NoticeRow(ActionButton::Perform perform, QWidget* parent);

    void setContent(const PanelNotice& content);
    [[nodiscard]] int heightForWidth(int width) const override;

    /// Null where the notice has no link.
    [[nodiscard]] ActionButton* link() const { return hasLink_ ? link_ : nullptr; }

  protected:
    void resizeEvent(QResizeEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

  private:
    [[nodiscard]] int textLeft() const;
    [[nodiscard]] int textWidth(int width) const;
    [[nodiscard]] int linkWidth(int width) const;
    [[nodiscard]] int textHeight(int width) const;
    void place();

    TextLabel* text_;
    ActionButton* link_;
    PanelNotice::Symbol symbol_ = PanelNotice::Symbol::information;
    bool hasText_ = false;
    bool hasLink_ = false;
};

} // namespace wakeloft
