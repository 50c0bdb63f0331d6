#pragma once

#include "SettingsContent.h"

#include <QCheckBox>

#include <functional>

namespace wakeloft {

/// Draws a `PresetRow`: a star and the length beside it. It shows the state that it was given and never one
/// of its own: a click only hands the length on.
class StarRow : public QCheckBox {
  public:
    using Toggle = std::function<void(AwakeDuration)>;
    static constexpr int fixedHeight = 26;

    StarRow(Toggle toggle, QWidget* parent);

    void setContent(const PresetRow& content);
    [[nodiscard]] bool hasFocusRing() const { return hasFocusRing_; }

  protected:
    void nextCheckState() override {}
    [[nodiscard]] bool hitButton(const QPoint& point) const override { return rect().contains(point); }
    void paintEvent(QPaintEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;

  private:
    PresetRow content_;
    bool hasFocusRing_ = false;
};

} // namespace wakeloft
