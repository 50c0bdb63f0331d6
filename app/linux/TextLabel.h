#pragma once

#include "TextBlock.h"

#include <QLabel>

namespace wakeloft {

/// A label whose text always wraps into its width (see TextBlock).
class TextLabel : public QLabel {
  public:
    TextLabel(const QFont& font, QPalette::ColorRole color, QWidget* parent);

    [[nodiscard]] int heightForWidth(int width) const override;

  protected:
    void paintEvent(QPaintEvent* event) override;

  private:
    [[nodiscard]] TextBlock::Format format() const;

    mutable KeptTextBlock text_;
};

} // namespace wakeloft
