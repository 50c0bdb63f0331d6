#pragma once

#include <QMenu>

namespace wakeloft {

/// A menu in the panel's frame: rounded and on a shadow where there is a compositor. Its style draws it.
class FramedMenu : public QMenu {
  public:
    explicit FramedMenu(QWidget* parent);

    /// As `setMinimumWidth`, of what is inside the shadow.
    void setMinimumFrameWidth(int width);
    /// The width of what is inside the shadow.
    [[nodiscard]] int frameWidth() const;
    /// Opens it with the frame's corner there, or where the screen has room for it.
    void openAt(QPoint corner);

  protected:
    void mousePressEvent(QMouseEvent* event) override;
};

} // namespace wakeloft
