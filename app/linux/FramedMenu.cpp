#include "FramedMenu.h"

#include "Motion.h"
#include "PanelFrame.h"
#include "X11Desktop.h"

#include <QMouseEvent>
#include <QWindow>

namespace wakeloft {

FramedMenu::FramedMenu(QWidget* parent) : QMenu(parent) {
    setWindowFlag(Qt::FramelessWindowHint);
    setWindowFlag(Qt::NoDropShadowWindowHint);
    if (!hasCompositor())
        return;
    setAttribute(Qt::WA_TranslucentBackground);
    setContentsMargins(panelFrame::margins);
}

void FramedMenu::setMinimumFrameWidth(int width) {
    setMinimumWidth(width + contentsMargins().left() + contentsMargins().right());
}

int FramedMenu::frameWidth() const {
    return sizeHint().width() - contentsMargins().left() - contentsMargins().right();
}

void FramedMenu::openAt(QPoint corner) {
    winId(); // the native window, to describe it before it appears
    declareShadow(*windowHandle(), contentsMargins());
    fadeIn(*this);
    popup(corner - QPoint(contentsMargins().left(), contentsMargins().top()));
}

void FramedMenu::mousePressEvent(QMouseEvent* event) {
    if (contentsRect().contains(event->position().toPoint()))
        QMenu::mousePressEvent(event);
    else
        close(); // the shadow is not part of it
}

} // namespace wakeloft
