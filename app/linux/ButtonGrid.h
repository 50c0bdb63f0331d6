#pragma once

#include "ActionButton.h"

#include <QWidget>

#include <vector>

namespace wakeloft {

/// Small buttons side by side, filling the width; in fewer columns where the titles are long.
class ButtonGrid : public QWidget {
  public:
    ButtonGrid(ActionButton::Perform perform, QWidget* parent);

    void setContent(const std::vector<PanelButton>& content);
    [[nodiscard]] int heightForWidth(int width) const override;

    /// Those that are shown, in reading order.
    [[nodiscard]] std::vector<ActionButton*> buttons() const;

  protected:
    void resizeEvent(QResizeEvent* event) override;

  private:
    struct Row {
        size_t first = 0;
        size_t count = 0;
        int y = 0;
        int height = 0;
    };
    [[nodiscard]] size_t columnsForWidth(int width) const;
    [[nodiscard]] std::vector<Row> rowsForWidth(int width) const;
    void place();

    ActionButton::Perform perform_;
    std::vector<ActionButton*> pool_; // kept hidden when unused: one may be in the middle of its own click
    size_t count_ = 0;
};

} // namespace wakeloft
