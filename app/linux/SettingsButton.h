#pragma once

#include "SettingsContent.h"

#include <QPushButton>

namespace wakeloft {

/// The row that opens the settings menu: a symbol, the title, and a symbol at the far end.
class SettingsButton : public QPushButton {
  public:
    static constexpr int sideMargin = 7; ///< beyond its symbols, for the focus ring around them

    explicit SettingsButton(QWidget* parent);

    void setContent(const SettingsMenuContent& content);
    [[nodiscard]] int heightForWidth(int width) const override;
    [[nodiscard]] bool hasFocusRing() const { return hasFocusRing_; }

  protected:
    void paintEvent(QPaintEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;

  private:
    SettingsMenuContent content_;
    bool hasFocusRing_ = false;
};

} // namespace wakeloft
