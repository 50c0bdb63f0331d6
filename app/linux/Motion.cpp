#include "Motion.h"

#include <QPaintEvent>
#include <QPainter>
#include <QStyle>
#include <QWidget>

#include <utility>

namespace wakeloft {

namespace {

int duration(const QWidget& widget) {
    return widget.style()->styleHint(QStyle::SH_Widget_Animation_Duration, nullptr, &widget);
}

/// Lies over a whole window and lets only a share of what is below it through. Window managers could do that,
/// but not on Wayland.
class Veil : public QWidget {
  public:
    explicit Veil(QWidget& window)
        : QWidget(&window), share_(*this, 0, [this](qreal share) {
              update();
              if (share >= 1)
                  deleteLater();
          }) {
        setAttribute(Qt::WA_TransparentForMouseEvents);
    }

  protected:
    void showEvent(QShowEvent* event) override {
        QWidget::showEvent(event);
        setGeometry(parentWidget()->rect()); // a menu gets its size only as it pops up
        share_.moveTo(1);
    }
    void paintEvent(QPaintEvent* event) override {
        QPainter painter(this);
        painter.setCompositionMode(QPainter::CompositionMode_DestinationIn);
        painter.fillRect(event->rect(), QColor::fromRgbF(0, 0, 0, static_cast<float>(share_.value())));
    }

  private:
    Motion share_;
};

} // namespace

Motion::Motion(const QWidget& widget, qreal value, std::function<void(qreal)> moved)
    : widget_(widget), from_(value), to_(value), value_(value), moved_(std::move(moved)) {
    animation_.setStartValue(0.0);
    animation_.setEndValue(1.0);
    animation_.setEasingCurve(QEasingCurve::OutCubic);
    QObject::connect(&animation_, &QVariantAnimation::valueChanged, &animation_,
                     [this](const QVariant& progress) { show(from_ + (to_ - from_) * progress.toReal()); });
}

void Motion::moveTo(qreal value) {
    animation_.stop();
    from_ = value_;
    to_ = value;
    animation_.setDuration(widget_.isVisible() ? duration(widget_) : 0);
    if (animation_.duration() > 0)
        animation_.start();
    else
        show(to_);
}

void Motion::show(qreal value) {
    value_ = value;
    moved_(value);
}

void fadeIn(QWidget& window) {
    if (window.testAttribute(Qt::WA_TranslucentBackground) && duration(window) > 0)
        (new Veil(window))->raise();
}

} // namespace wakeloft
