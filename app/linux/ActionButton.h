#pragma once

#include "PanelContent.h"
#include "TextBlock.h"

#include <QPushButton>

#include <functional>

namespace wakeloft {

/// Draws a `PanelButton` and hands its action on, unread. Long titles wrap. The focus ring appears only when
/// the focus came by the keyboard.
class ActionButton : public QPushButton {
  public:
    enum class Kind { main, beside, small, link }; ///< `beside`: as large as the main one
    /// At both sides of a link's text, for its focus ring.
    static constexpr int linkPadding = 4;
    using Perform = std::function<void(const PanelAction&)>;

    ActionButton(Kind kind, Perform perform, QWidget* parent);

    void setContent(const PanelButton& content);

    /// Wide enough for the title on one line.
    [[nodiscard]] int naturalWidth() const;
    [[nodiscard]] int heightForWidth(int width) const override;
    [[nodiscard]] bool hasFocusRing() const { return hasFocusRing_; }

  protected:
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

  private:
    void paintShape(QPainter& painter) const;
    void paintFocusRing(QPainter& painter) const;
    [[nodiscard]] QPalette::ColorRole textRole() const;

    Kind kind_;
    QString title_;
    mutable KeptTextBlock titleBlock_;
    PanelAction action_;
    bool hasFocusRing_ = false;
};

} // namespace wakeloft
