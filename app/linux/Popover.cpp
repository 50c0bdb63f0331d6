#include "Popover.h"

#include "Motion.h"
#include "PanelFrame.h"
#include "X11Desktop.h"

#include <QMouseEvent>
#include <QPainter>
#include <QScreen>
#include <QWindow>

#include <algorithm>
#include <utility>

namespace wakeloft {

namespace {

constexpr int gapToAnchor = 4;

QPoint placeBeside(QWidget& anchor, QSize size) {
    const QRect free = anchor.screen()->availableGeometry();
    const QRect place(anchor.mapToGlobal(QPoint()), anchor.size());
    int y = place.bottom() + 1 + gapToAnchor;
    if (y + size.height() > free.bottom() + 1 && place.top() - gapToAnchor - size.height() >= free.top())
        y = place.top() - gapToAnchor - size.height();
    const int x = place.center().x() - size.width() / 2;
    return {std::clamp(x, free.left(), std::max(free.left(), free.right() + 1 - size.width())),
            std::clamp(y, free.top(), std::max(free.top(), free.bottom() + 1 - size.height()))};
}

} // namespace

Popover::Popover(QWidget* anchor, QWidget* content, int contentWidth, std::function<void()> closed)
    : QWidget(anchor->window(), Qt::Popup | Qt::FramelessWindowHint | Qt::NoDropShadowWindowHint),
      anchor_(anchor),
      content_(content),
      closed_(std::move(closed)),
      isComposited_(hasCompositor()) {
    setAttribute(Qt::WA_DeleteOnClose);
    setAttribute(Qt::WA_TranslucentBackground, isComposited_);
    setLayoutDirection(anchor->layoutDirection());
    content_->setParent(this);
    const QMargins shadow = isComposited_ ? panelFrame::margins : QMargins();
    const QSize size(contentWidth, content_->heightForWidth(contentWidth));
    content_->setGeometry(QRect(QPoint(shadow.left(), shadow.top()), size));
    setFixedSize(size.grownBy(shadow));
}

void Popover::open(Qt::FocusReason reason) {
    if (anchor_ == nullptr)
        return;
    const QPoint inside = content_->geometry().topLeft();
    move(placeBeside(*anchor_, content_->size()) - inside);
    winId(); // the native window, to describe it before it appears
    if (isComposited_)
        declareShadow(*windowHandle(), panelFrame::margins);
    fadeIn(*this);
    show();
    content_->setFocus(reason);
}

void Popover::mousePressEvent(QMouseEvent* event) {
    QWidget::mousePressEvent(event);
    if (!content_->geometry().contains(event->position().toPoint()))
        close(); // the shadow is not part of it
}

void Popover::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    if (isComposited_)
        panelFrame::paint(painter, rect(), palette());
    else
        panelFrame::paintSquare(painter, rect(), palette());
}

void Popover::hideEvent(QHideEvent* event) {
    QWidget::hideEvent(event);
    if (const auto closed = std::exchange(closed_, nullptr))
        closed();
    close();
}

} // namespace wakeloft
