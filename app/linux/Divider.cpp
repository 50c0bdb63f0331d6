#include "Divider.h"

#include "Theme.h"

#include <QPainter>

namespace wakeloft {

Divider::Divider(QWidget* parent) : QWidget(parent) {}

int Divider::heightForWidth(int) const {
    return 1;
}

void Divider::paintEvent(QPaintEvent*) {
    QPainter(this).fillRect(rect(), palette().color(role::divider));
}

} // namespace wakeloft
