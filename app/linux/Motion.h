#pragma once

#include <QVariantAnimation>

#include <functional>

class QWidget;

namespace wakeloft {

/// A number that a widget draws by, which moves to its new value where the style lets things move, and is
/// there at once where not or where the widget is not seen. Runs no timer while it rests.
class Motion {
  public:
    /// `moved` is told each new value.
    Motion(const QWidget& widget, qreal value, std::function<void(qreal)> moved);

    void moveTo(qreal value);
    [[nodiscard]] qreal value() const { return value_; }

  private:
    void show(qreal value);

    const QWidget& widget_;
    qreal from_;
    qreal to_;
    qreal value_;
    std::function<void(qreal)> moved_;
    QVariantAnimation animation_;
};

/// Lets a window that is about to be shown appear gradually. Only where it is translucent and motion is
/// wanted; otherwise it is there at once.
void fadeIn(QWidget& window);

} // namespace wakeloft
