#pragma once

#include <QWidget>

namespace wakeloft {

/// A hairline across the panel.
class Divider : public QWidget {
  public:
    explicit Divider(QWidget* parent);

    [[nodiscard]] int heightForWidth(int width) const override;

  protected:
    void paintEvent(QPaintEvent* event) override;
};

} // namespace wakeloft
