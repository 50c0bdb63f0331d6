#pragma once

#include "PanelContent.h"
#include "TextBlock.h"

#include <QLabel>

namespace wakeloft {

/// The glyph, the title beside it and the status line below; to a screen reader one element, in words.
class PanelHeader : public QLabel {
  public:
    explicit PanelHeader(QWidget* parent);

    void setContent(const PanelContent& content);
    [[nodiscard]] int heightForWidth(int width) const override;

  protected:
    void paintEvent(QPaintEvent* event) override;

  private:
    MenuBarIcon icon_;
    QString title_;
    QString statusLine_;
    mutable KeptTextBlock titleBlock_;
    mutable KeptTextBlock statusBlock_;
};

} // namespace wakeloft
