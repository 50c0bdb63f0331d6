#pragma once

#include "Motion.h"
#include "PanelContent.h"
#include "TextBlock.h"

#include <QCheckBox>

#include <functional>

namespace wakeloft {

/// Draws a `PanelSwitch`: its title, the switch at the far end, and the footnote below. It shows the state
/// that it was given and never one of its own: a click only hands the action on.
class SwitchRow : public QCheckBox {
  public:
    using Perform = std::function<void(const PanelAction&)>;
    static constexpr int ringMargin = 4; ///< around it, which the focus ring of the switch reaches into

    SwitchRow(Perform perform, QWidget* parent);

    void setContent(const PanelSwitch& content);
    [[nodiscard]] int heightForWidth(int width) const override;
    [[nodiscard]] bool hasFocusRing() const { return hasFocusRing_; }

  protected:
    void nextCheckState() override {}
    [[nodiscard]] bool hitButton(const QPoint& point) const override;
    void paintEvent(QPaintEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;

  private:
    [[nodiscard]] int titleHeight(int width) const;
    void paintSwitch(QPainter& painter, const QRectF& track) const;

    PanelSwitch content_;
    QString title_;
    QString footnote_;
    mutable KeptTextBlock titleBlock_;
    mutable KeptTextBlock footnoteBlock_;
    Motion knob_; ///< from off, 0, to on, 1
    bool hasFocusRing_ = false;
};

} // namespace wakeloft
