#pragma once

#include <QPointer>
#include <QWidget>

#include <functional>

namespace wakeloft {

/// A small framed window on a widget of the panel, which stays open behind it. A press elsewhere or Escape
/// closes it, and so does the panel's end.
class Popover : public QWidget {
  public:
    /// `closed` is told once, however it closes. It deletes itself then. `content` becomes its own; it has a
    /// `heightForWidth`.
    Popover(QWidget* anchor, QWidget* content, int contentWidth, std::function<void()> closed);

    /// Shows it below the anchor, or above it where there is no room, inside the screen. `reason`: by what
    /// its content gets the focus.
    void open(Qt::FocusReason reason);

  protected:
    void mousePressEvent(QMouseEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void hideEvent(QHideEvent* event) override;

  private:
    QPointer<QWidget> anchor_;
    QWidget* content_;
    std::function<void()> closed_;
    bool isComposited_;
};

} // namespace wakeloft
